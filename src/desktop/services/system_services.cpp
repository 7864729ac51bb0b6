#include "desktop/services/system_services.h"

#include <QEvent>
#include <QGuiApplication>

#include <string>

#include <unistd.h>

namespace glimra::desktop {

void StderrSystemLog::write(std::string_view line) {
    // One write per line, so that lines of several threads do not mix.
    const std::string text = "glimra: " + std::string(line) + "\n";
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
}

std::uint32_t RandomNumbers::uniform(std::uint32_t upperBound) {
    return std::uniform_int_distribution<std::uint32_t>(0, upperBound - 1)(m_engine);
}

Modifiers::Modifiers() {
    QCoreApplication::instance()->installEventFilter(this);
}

bool Modifiers::optionKeyIsDown() const {
    return m_lastInputWasMouse && QGuiApplication::queryKeyboardModifiers().testFlag(Qt::AltModifier);
}

bool Modifiers::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
        m_lastInputWasMouse = true;
        break;
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
        m_lastInputWasMouse = false;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace glimra::desktop
