#include "desktop/services/x11_display_sleep.h"

#include "desktop/x11/connector.h"

#include <QTimerEvent>

#include <xcb/dpms.h>
#include <xcb/screensaver.h>
#include <xcb/xcbext.h>

#include <chrono>
#include <utility>

namespace glimra::desktop {

namespace {

/// A late notice of sleep costs only some captures. A late notice of waking is seen by the user.
constexpr int kPauseAwakeMs = 10'000;
constexpr int kPauseAsleepMs = 1'000;

/// A request for an extension that the server lacks would end the connection.
const xcb_query_extension_reply_t* presentExtension(xcb_connection_t* connection, xcb_extension_t* id) {
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection, id);
    return extension != nullptr && extension->present != 0 ? extension : nullptr;
}

bool isBlanked(std::uint8_t screenSaverState) {
    return screenSaverState == XCB_SCREENSAVER_STATE_ON || screenSaverState == XCB_SCREENSAVER_STATE_CYCLE;
}

/// On the thread that connects: xcb asks about an extension once, and waits for the answer without a limit.
void learnExtensions(xcb_connection_t* connection) {
    xcb_get_extension_data(connection, &xcb_screensaver_id);
    xcb_get_extension_data(connection, &xcb_dpms_id);
}

} // namespace

X11DisplaySleep::X11DisplaySleep(const std::string& displayName)
    : m_connection(Connector(displayName, &learnExtensions).connect(std::chrono::seconds(1))) {
}

void X11DisplaySleep::observe(Teller tell) {
    m_tell = std::move(tell);
    if (!m_connection)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(m_connection->fileDescriptor(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { read(); });
    watchScreenSaver();
    watchDisplayPower();
    read();
}

void X11DisplaySleep::watchScreenSaver() {
    xcb_connection_t* const connection = m_connection->xcb();
    const auto* const extension = presentExtension(connection, &xcb_screensaver_id);
    if (extension == nullptr)
        return;
    m_screenSaverEvent = static_cast<std::uint8_t>(extension->first_event + XCB_SCREENSAVER_NOTIFY);
    xcb_screensaver_select_input(connection, m_connection->root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
    const auto info = m_connection->reply<xcb_screensaver_query_info_reply_t>(
        xcb_screensaver_query_info(connection, m_connection->root()));
    if (info)
        m_tell(SleepSource::ScreenSaver, isBlanked(info->state));
}

void X11DisplaySleep::watchDisplayPower() {
    if (presentExtension(m_connection->xcb(), &xcb_dpms_id) != nullptr)
        askForDisplayPower();
}

void X11DisplaySleep::askForDisplayPower() {
    m_question = xcb_dpms_info(m_connection->xcb()).sequence;
    xcb_flush(m_connection->xcb());
}

void X11DisplaySleep::takeDisplayPower() {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (!m_question || xcb_poll_for_reply(m_connection->xcb(), *m_question, &reply, &error) == 0)
        return;
    m_question.reset();
    const XcbPointer<xcb_generic_error_t> freeError(error);
    const XcbPointer<xcb_dpms_info_reply_t> info(static_cast<xcb_dpms_info_reply_t*>(reply));
    const bool asleep = info && info->state != 0 && info->power_level != XCB_DPMS_DPMS_MODE_ON;
    m_askAgain.start(asleep ? kPauseAsleepMs : kPauseAwakeMs, this);
    m_tell(SleepSource::DisplayPower, asleep);
}

void X11DisplaySleep::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_askAgain.timerId())
        return;
    m_askAgain.stop();
    askForDisplayPower();
    read();
}

// Must also be called after each exchange with the server: data that xcb has already read does not make the
// descriptor readable again.
void X11DisplaySleep::read() {
    readEvents();
    takeDisplayPower();
    if (m_connection->isLost())
        giveUp();
}

void X11DisplaySleep::readEvents() {
    while (const auto event = m_connection->pollEvent()) {
        // The highest bit marks events sent by other clients; only the server's own count.
        if (m_screenSaverEvent == 0 || event->response_type != m_screenSaverEvent)
            continue;
        const auto* const notify = reinterpret_cast<const xcb_screensaver_notify_event_t*>(event.get());
        m_tell(SleepSource::ScreenSaver, isBlanked(notify->state));
    }
}

void X11DisplaySleep::giveUp() {
    m_notifier->setEnabled(false);
    m_askAgain.stop();
    m_tell(SleepSource::ScreenSaver, false);
    m_tell(SleepSource::DisplayPower, false);
}

} // namespace glimra::desktop
