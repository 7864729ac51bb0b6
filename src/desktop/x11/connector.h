#pragma once

#include "desktop/x11/connection.h"

#include <future>

namespace glimra::desktop {

/// Connects to one display, again and again if need be, without making its owner wait for a server that does
/// not answer: every attempt runs on a thread of its own, one at a time, with growing pauses between them.
class Connector {
public:
    /// An empty name stands for the one in the environment.
    explicit Connector(std::string displayName);

    /// Makes the first attempt and waits for it, for `patience` at most; null when it has not succeeded by
    /// then.
    std::unique_ptr<Connection> connect(platform::Duration patience);
    /// To be called while there is no connection: starts an attempt when one is due, and returns the
    /// connection when an attempt has succeeded. Returns at once.
    std::unique_ptr<Connection> retry(platform::Time now);
    /// Whether the server has yet to answer an attempt.
    bool isTrying() const { return m_attempt.valid(); }
    /// When `retry` has something to do next.
    platform::Time retryAt() const { return m_retryAt; }

private:
    void startAttempt();

    std::string m_displayName;
    std::future<std::unique_ptr<Connection>> m_attempt;
    platform::Time m_retryAt{};
    platform::Duration m_pause;
};

} // namespace glimra::desktop
