#include "desktop/x11/connection.h"

#include <poll.h>
#include <xcb/randr.h>
#include <xcb/xcbext.h>

namespace glimra::desktop {

namespace {

using Clock = std::chrono::steady_clock;

const xcb_screen_t* screenOfNumber(const xcb_setup_t* setup, int number) {
    for (auto screens = xcb_setup_roots_iterator(setup); screens.rem > 0; xcb_screen_next(&screens))
        if (number-- == 0)
            return screens.data;
    return nullptr;
}

/// Returns false when the deadline has passed.
bool waitUntilReadable(int fileDescriptor, Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0)
        return false;
    pollfd waiting{fileDescriptor, POLLIN, 0};
    ::poll(&waiting, 1, static_cast<int>(left.count()));
    return true;
}

} // namespace

std::unique_ptr<Connection> Connection::open(const std::string& displayName, Prepare prepare) {
    int screenNumber = 0;
    std::unique_ptr<Connection> connection(
        new Connection(xcb_connect(displayName.empty() ? nullptr : displayName.c_str(), &screenNumber)));
    if (connection->isLost())
        return nullptr;
    connection->m_screen = screenOfNumber(xcb_get_setup(connection->xcb()), screenNumber);
    // When a program first uses an extension, xcb queries it and waits without a limit. So it is done here;
    // later the answer is cached.
    xcb_get_extension_data(connection->xcb(), &xcb_randr_id);
    if (prepare != nullptr)
        prepare(connection->xcb());
    if (connection->m_screen == nullptr || connection->isLost())
        return nullptr;
    return connection;
}

Connection::~Connection() {
    xcb_disconnect(m_xcb);
}

int Connection::fileDescriptor() const {
    return xcb_get_file_descriptor(m_xcb);
}

bool Connection::isLost() const {
    return xcb_connection_has_error(m_xcb) != 0;
}

bool Connection::isSilent() {
    if (!m_overdue)
        return false;
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (xcb_poll_for_reply(m_xcb, *m_overdue, &reply, &error) == 0)
        return true;
    std::free(reply);
    std::free(error);
    m_overdue.reset();
    return false;
}

Connection::RawAnswer Connection::waitForAnswer(unsigned int sequence) {
    if (isSilent()) {
        xcb_discard_reply(m_xcb, sequence);
        return {};
    }
    xcb_flush(m_xcb);
    const auto deadline = Clock::now() + kReplyPatience;
    do {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_poll_for_reply(m_xcb, sequence, &reply, &error) != 0) {
            const std::uint8_t errorCode = error == nullptr ? std::uint8_t{0} : error->error_code;
            std::free(error);
            return {reply, errorCode};
        }
    } while (waitUntilReadable(fileDescriptor(), deadline));
    m_overdue = sequence;
    return {};
}

XcbPointer<xcb_generic_event_t> Connection::pollEvent() {
    return XcbPointer<xcb_generic_event_t>(xcb_poll_for_event(m_xcb));
}

} // namespace glimra::desktop
