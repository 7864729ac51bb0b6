#pragma once

#include "keyboards/device/wake_event.h"
#include "keyboards/openrgb/bytes.h"

#include <optional>
#include <string>

namespace glimra::keyboards::openrgb {

using platform::Duration;
using platform::Time;

/// The address of a server.
struct ServerAddress {
    /// A numeric address, or "localhost".
    std::string host = "127.0.0.1";
    std::uint16_t port = 6742;
};

/// A TCP connection. It waits no longer than the deadline of each call, and stops waiting when `stop` is set.
/// One thread.
class Connection {
public:
    explicit Connection(const WakeEvent& stop) : m_stop(stop) {}
    ~Connection() { close(); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// `host` is a numeric address, or "localhost" for 127.0.0.1. Other names are refused, because looking up
    /// a name cannot be interrupted. Returns what went wrong, or nothing when it is connected.
    std::string connect(const std::string& host, std::uint16_t port, Time deadline);
    void close();
    bool isOpen() const { return m_fd >= 0; }
    int fd() const { return m_fd; }

    /// Sends all bytes. False when the connection breaks or `deadline` passes before all are sent.
    bool send(Bytes bytes, Time deadline);

    enum class Wait {
        /// The wait ends when `stop` is set.
        UntilStopped,
        /// The wait goes on when `stop` is set, so that the end of a conversation can be heard.
        Anyway
    };
    /// Waits until something has come or the connection is broken; false when neither happened in time.
    bool waitForInput(Time deadline, Wait wait);
    /// What has come by now; does not wait. Empty when nothing has come, none when the connection has ended.
    /// Valid until the next call.
    std::optional<Bytes> receive();
    /// Tells the other side that nothing more will be sent.
    void finishSending();

private:
    const WakeEvent& m_stop;
    int m_fd = -1;
    std::vector<std::uint8_t> m_buffer;
};

} // namespace glimra::keyboards::openrgb
