#pragma once

#include "desktop/x11/connection.h"

#include <future>

namespace glimra::desktop {

/// How long a start waits for a display that does not answer.
inline constexpr platform::Duration kConnectPatience = std::chrono::seconds(1);

/// Connects to one display, repeatedly if needed, so that its owner never waits for a server that does not
/// answer. Each attempt runs on a thread of its own, one at a time, with growing pauses in between.
class Connector {
public:
    /// An empty name means $DISPLAY.
    explicit Connector(std::string displayName, Connection::Prepare prepare = nullptr);

    /// Starts the first attempt and waits for it, at most `patience`; null when it has not succeeded by then.
    std::unique_ptr<Connection> connect(platform::Duration patience);
    /// Must be called while there is no connection. Starts an attempt when one is due, and returns the
    /// connection when an attempt has succeeded. Returns at once.
    std::unique_ptr<Connection> retry(platform::Time now);
    /// Whether an attempt is waiting for the server.
    bool isTrying() const { return m_attempt.valid(); }
    /// The time at which `retry` should be called next.
    platform::Time retryAt() const { return m_retryAt; }

private:
    void startAttempt();

    std::string m_displayName;
    Connection::Prepare m_prepare;
    std::future<std::unique_ptr<Connection>> m_attempt;
    platform::Time m_retryAt{};
    platform::Duration m_pause;
};

} // namespace glimra::desktop
