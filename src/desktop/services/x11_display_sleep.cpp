#include "desktop/services/x11_display_sleep.h"

#include <QTimerEvent>

#include <xcb/dpms.h>
#include <xcb/screensaver.h>
#include <xcb/xcbext.h>

#include <cstdlib>
#include <utility>

namespace glimra::desktop {

namespace {

/// A late notice of sleep costs only some captures. A late notice of waking is seen by the user.
constexpr int kPauseAwakeMs = 10'000;
constexpr int kPauseAsleepMs = 1'000;

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};
template <class Value>
using Owned = std::unique_ptr<Value, FreeMemory>;

/// A request for an extension that the server lacks would end the connection.
const xcb_query_extension_reply_t* presentExtension(xcb_connection_t* connection, xcb_extension_t* id) {
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection, id);
    return extension != nullptr && extension->present != 0 ? extension : nullptr;
}

bool isBlanked(std::uint8_t screenSaverState) {
    return screenSaverState == XCB_SCREENSAVER_STATE_ON || screenSaverState == XCB_SCREENSAVER_STATE_CYCLE;
}

} // namespace

X11DisplaySleep::X11DisplaySleep(const std::string& displayName)
    : m_connection(xcb_connect(displayName.empty() ? nullptr : displayName.c_str(), &m_screenNumber)) {
}

void X11DisplaySleep::observe(Teller tell) {
    m_tell = std::move(tell);
    if (isLost())
        return;
    m_notifier =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { read(); });
    watchScreenSaver();
    watchDisplayPower();
    read();
}

void X11DisplaySleep::watchScreenSaver() {
    xcb_connection_t* const connection = m_connection.get();
    const auto* const extension = presentExtension(connection, &xcb_screensaver_id);
    if (extension == nullptr)
        return;
    m_screenSaverEvent = static_cast<std::uint8_t>(extension->first_event + XCB_SCREENSAVER_NOTIFY);
    xcb_screensaver_select_input(connection, root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
    const Owned<xcb_screensaver_query_info_reply_t> info(xcb_screensaver_query_info_reply(
        connection, xcb_screensaver_query_info(connection, root()), nullptr));
    if (info)
        m_tell(SleepSource::ScreenSaver, isBlanked(info->state));
}

void X11DisplaySleep::watchDisplayPower() {
    if (presentExtension(m_connection.get(), &xcb_dpms_id) != nullptr)
        askForDisplayPower();
}

void X11DisplaySleep::askForDisplayPower() {
    m_question = xcb_dpms_info(m_connection.get()).sequence;
    xcb_flush(m_connection.get());
}

void X11DisplaySleep::takeDisplayPower() {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (!m_question || xcb_poll_for_reply(m_connection.get(), *m_question, &reply, &error) == 0)
        return;
    m_question.reset();
    const Owned<xcb_generic_error_t> freeError(error);
    const Owned<xcb_dpms_info_reply_t> info(static_cast<xcb_dpms_info_reply_t*>(reply));
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
    if (isLost())
        giveUp();
}

void X11DisplaySleep::readEvents() {
    while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
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

xcb_window_t X11DisplaySleep::root() const {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get()));
    for (int number = m_screenNumber; number > 0 && screens.rem > 1; --number)
        xcb_screen_next(&screens);
    return screens.rem > 0 ? screens.data->root : XCB_NONE;
}

} // namespace glimra::desktop
