#pragma once

#include "platform/run_loop.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace glimra::desktop {

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};

/// Owns a reply, an event or an error that xcb has allocated.
template <class Value>
using XcbPointer = std::unique_ptr<Value, FreeMemory>;

/// How long a client waits for the server's answer before it goes on without it. A healthy server needs a
/// fraction of a millisecond, but it may stall while it sets a mode or while another client has grabbed it.
inline constexpr platform::Duration kReplyPatience = std::chrono::milliseconds(500);

/// A connection of our own to an X server, on which no wait is unlimited. One thread at a time.
class Connection {
public:
    /// Asks about the extensions that the owner will use.
    using Prepare = void (*)(xcb_connection_t*);
    /// Connects and prepares what later requests need; null when the server cannot be reached. Only this
    /// function waits for the server without a limit; see `Connector`.
    static std::unique_ptr<Connection> open(const std::string& displayName, Prepare prepare = nullptr);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    xcb_connection_t* xcb() const { return m_xcb; }
    const xcb_screen_t& screen() const { return *m_screen; }
    xcb_window_t root() const { return m_screen->root; }
    int fileDescriptor() const;

    /// Whether the connection is lost; it will never work again.
    bool isLost() const;
    /// Whether an answer is overdue. No requests should be sent then: they would only pile up.
    bool isSilent();

    /// The result of a request: a reply, or the error code sent instead, or neither when the connection is
    /// lost or the server is silent.
    template <class Reply>
    struct Answer {
        XcbPointer<Reply> reply;
        std::uint8_t errorCode = 0;
    };
    template <class Reply, class Cookie>
    Answer<Reply> answer(Cookie cookie) {
        const RawAnswer raw = waitForAnswer(cookie.sequence);
        return {XcbPointer<Reply>(static_cast<Reply*>(raw.reply)), raw.errorCode};
    }
    /// The reply alone; null when there is none, for any reason.
    template <class Reply, class Cookie>
    XcbPointer<Reply> reply(Cookie cookie) {
        return answer<Reply>(cookie).reply;
    }
    /// The next event that has already arrived; null when there is none. Sends nothing.
    XcbPointer<xcb_generic_event_t> pollEvent();

private:
    explicit Connection(xcb_connection_t* xcb) : m_xcb(xcb) {}
    struct RawAnswer {
        void* reply = nullptr;
        std::uint8_t errorCode = 0;
    };
    RawAnswer waitForAnswer(unsigned int sequence);

    xcb_connection_t* m_xcb;
    const xcb_screen_t* m_screen = nullptr;
    /// The request whose answer we have stopped waiting for.
    std::optional<unsigned int> m_overdue;
};

/// The type of an event, whether it was sent by the server or another client.
inline std::uint8_t eventType(const xcb_generic_event_t& event) {
    return event.response_type & 0x7F;
}

} // namespace glimra::desktop
