#pragma once

#include "keyboards/device/wake_event.h"
#include "keyboards/openrgb/bytes.h"

#include <optional>
#include <string>

namespace glimra::keyboards::openrgb {

using platform::Duration;
using platform::Time;

/// Where a server is looked for.
struct ServerAddress {
    /// Numeric, or "localhost".
    std::string host = "127.0.0.1";
    std::uint16_t port = 6742;
};

/// Whether something may listen there: false when the answer that nothing does is there within 10 ms, as it
/// is for this machine's own addresses.
bool mayListen(const ServerAddress& server);

/// A TCP connection that never waits longer than it is told to, and only while `stop` is not set. One thread.
class Connection {
public:
    explicit Connection(const WakeEvent& stop) : m_stop(stop) {}
    ~Connection() { close(); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// `host` is a numeric address, or "localhost" for 127.0.0.1: a name would have to be looked up, which
    /// cannot be broken off. Returns what went wrong, empty when it is connected.
    std::string connect(const std::string& host, std::uint16_t port, Time deadline);
    void close();
    bool isOpen() const { return m_fd >= 0; }
    int fd() const { return m_fd; }

    /// Sends all of it; false when the connection is broken or `deadline` passes before.
    bool send(Bytes bytes, Time deadline);

    enum class Wait {
        /// Ends when `stop` is set.
        UntilStopped,
        /// Goes on when it is: for what has to be said at the end.
        Anyway
    };
    /// Something has come, or the connection is broken; false when neither happened before `deadline`.
    bool waitForInput(Time deadline, Wait wait);
    /// What has come by now, without waiting: empty when nothing has, none when the connection is over. Valid
    /// until the next call.
    std::optional<Bytes> receive();
    /// Tells the other side that nothing more will be sent.
    void finishSending();

private:
    const WakeEvent& m_stop;
    int m_fd = -1;
    std::vector<std::uint8_t> m_buffer;
};

} // namespace glimra::keyboards::openrgb
