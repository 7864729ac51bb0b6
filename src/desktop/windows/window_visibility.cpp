#include "desktop/windows/window_visibility.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <utility>

namespace glimra::desktop {

namespace {

xcb_connection_t* xcbOfQt() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

} // namespace

WindowVisibility::WindowVisibility(QWidget& widget, std::function<void()> seenAgain)
    : m_widget(widget),
      m_seenAgain(std::move(seenAgain)) {
    // A window that is exposed again says so to its QWindow alone, which comes and goes.
    qGuiApp->installEventFilter(this);
    if (xcbOfQt() != nullptr)
        qGuiApp->installNativeEventFilter(this);
}

WindowVisibility::~WindowVisibility() {
    if (qGuiApp != nullptr)
        qGuiApp->removeNativeEventFilter(this);
}

bool WindowVisibility::isSeen() const {
    const QWindow* const window = m_widget.window()->windowHandle();
    return m_widget.isVisible() && !m_widget.window()->isMinimized() && window != nullptr &&
           window->isExposed() && !m_isCovered;
}

bool WindowVisibility::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Expose && watched == m_widget.window()->windowHandle()) {
        watchWindow();
        // The window itself takes note of it behind this filter.
        QMetaObject::invokeMethod(
            this, [this] { m_seenAgain(); }, Qt::QueuedConnection);
    }
    return false;
}

void WindowVisibility::watchWindow() {
    xcb_connection_t* const xcb = xcbOfQt();
    const auto window = static_cast<std::uint32_t>(m_widget.window()->windowHandle()->winId());
    if (xcb == nullptr || window == m_watched)
        return;
    m_watched = window;
    m_isCovered = false;
    // Qt asks for other events of the window; they stay.
    const std::unique_ptr<xcb_get_window_attributes_reply_t, decltype(&std::free)> now(
        xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, window), nullptr), &std::free);
    if (!now)
        return;
    const std::uint32_t events = now->your_event_mask | XCB_EVENT_MASK_VISIBILITY_CHANGE;
    xcb_change_window_attributes(xcb, window, XCB_CW_EVENT_MASK, &events);
}

bool WindowVisibility::nativeEventFilter(const QByteArray& kind, void* message, qintptr*) {
    if (kind != "xcb_generic_event_t")
        return false;
    const auto* const event = static_cast<const xcb_visibility_notify_event_t*>(message);
    if ((event->response_type & 0x7F) != XCB_VISIBILITY_NOTIFY || event->window != m_watched)
        return false;
    const bool wasCovered = std::exchange(m_isCovered, event->state == XCB_VISIBILITY_FULLY_OBSCURED);
    if (wasCovered && !m_isCovered)
        m_seenAgain();
    return false;
}

} // namespace glimra::desktop
