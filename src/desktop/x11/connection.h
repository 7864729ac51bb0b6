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

/// A reply, an event or an error that xcb has given away.
template <class Value>
using XcbPointer = std::unique_ptr<Value, FreeMemory>;

/// How long a server may take to answer before its client goes on without the answer. A healthy one needs a
/// fraction of a millisecond, but it may stand still while it sets a mode or while a client has grabbed it.
inline constexpr platform::Duration kReplyPatience = std::chrono::milliseconds(500);

/// A connection of our own to an X server, with no wait that the server could prolong. One thread at a time.
class Connection {
public:
    /// Connects and learns what every later request needs; null when the server cannot be reached. This, and
    /// this alone, waits for as long as the server pleases: see `Connector`.
    static std::unique_ptr<Connection> open(const std::string& displayName);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    xcb_connection_t* xcb() const { return m_xcb; }
    const xcb_screen_t& screen() const { return *m_screen; }
    xcb_window_t root() const { return m_screen->root; }
    int fileDescriptor() const;

    /// The server has gone; nothing will ever come through this connection again.
    bool isLost() const;
    /// An answer is overdue. Requests should not be sent now: they would only pile up.
    bool isSilent();

    /// What a request brought: an answer, or the code of the error that came instead, or neither on a lost
    /// connection and when the server is silent.
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
    /// The answer alone; null when there is none, for whatever reason.
    template <class Reply, class Cookie>
    XcbPointer<Reply> reply(Cookie cookie) {
        return answer<Reply>(cookie).reply;
    }
    /// The next event that has already arrived, null if there is none; sends nothing.
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
    /// The request whose answer was given up.
    std::optional<unsigned int> m_overdue;
};

/// The kind of an event, whether the server or another client sent it.
inline std::uint8_t eventType(const xcb_generic_event_t& event) {
    return event.response_type & 0x7F;
}

} // namespace glimra::desktop
