#include "desktop/services/desktop_workspace.h"

#include "platform/monotonic_clock.h"

#include <QDesktopServices>
#include <QUrl>

#include <algorithm>

namespace glimra::desktop {

DesktopWorkspace::DesktopWorkspace(const std::string& displayName, PowerServices& power,
                                   std::function<void()> afterWaking)
    : m_power(power),
      m_afterWaking(std::move(afterWaking)),
      m_frontmost(displayName, [this] {
          if (m_frontChanged)
              m_frontChanged();
      }) {
    processEvents();
}

std::optional<platform::RunningApplication> DesktopWorkspace::frontmostApplication() const {
    return m_frontmost.frontmost();
}

void DesktopWorkspace::observeSleep(std::function<void()> aboutToSleep,
                                    std::function<void()> screensDidWake) {
    m_power.observeSleep(std::move(aboutToSleep), [this, screensDidWake = std::move(screensDidWake)] {
        screensDidWake();
        m_afterWaking();
    });
}

bool DesktopWorkspace::openUrl(const std::string& address) {
    const QUrl url(QString::fromStdString(address), QUrl::StrictMode);
    const bool isOpening = url.isValid() && !url.isRelative() && QDesktopServices::openUrl(url);
    told.emit(isOpening ? "The browser is asked for " + address
                        : "No browser can be started. The page is at " + address);
    return isOpening;
}

void DesktopWorkspace::timerEvent(QTimerEvent*) {
    processEvents();
}

void DesktopWorkspace::processEvents() {
    const platform::Time now = platform::monotonicNow();
    m_frontmost.processEvents(now);

    const int descriptor = m_frontmost.fileDescriptor();
    if (descriptor != (m_notifier ? static_cast<int>(m_notifier->socket()) : -1)) {
        m_notifier.reset();
        if (descriptor >= 0) {
            m_notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
            connect(m_notifier.get(), &QSocketNotifier::activated, this, &DesktopWorkspace::processEvents);
        }
    }

    m_wakeUp.stop();
    if (const std::optional<platform::Time> wakeUpAt = m_frontmost.wakeUpAt()) {
        const auto delay = std::chrono::ceil<std::chrono::milliseconds>(*wakeUpAt - now);
        constexpr std::chrono::milliseconds kLongest = std::chrono::hours(1);
        m_wakeUp.start(static_cast<int>(std::clamp(delay, {}, kLongest).count()), Qt::PreciseTimer, this);
    }
}

} // namespace glimra::desktop
