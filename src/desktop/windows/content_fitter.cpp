#include "desktop/windows/content_fitter.h"

#include <QEvent>
#include <QLayout>

#include <algorithm>

namespace glimra::desktop {

ContentFitter::ContentFitter(QWidget* window)
    : QObject(window),
      m_window(window),
      m_designedWidth(window->width()) {
    window->layout()->setSizeConstraint(QLayout::SetNoConstraint);
    window->installEventFilter(this);
    fit();
}

bool ContentFitter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show || event->type() == QEvent::FontChange)
        fit();
    return QObject::eventFilter(watched, event);
}

void ContentFitter::fit() {
    QLayout* const layout = m_window->layout();
    layout->invalidate();
    const int width = std::max(m_designedWidth, layout->totalSizeHint().width());
    // Texts that wrap need the more height the narrower they are.
    const int height =
        layout->hasHeightForWidth() ? layout->totalHeightForWidth(width) : layout->totalSizeHint().height();
    m_window->setFixedSize(width, height);
}

} // namespace glimra::desktop
