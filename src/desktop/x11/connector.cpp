#include "desktop/x11/connector.h"

#include "platform/monotonic_clock.h"

#include <algorithm>
#include <system_error>
#include <thread>
#include <utility>

namespace glimra::desktop {

namespace {

using namespace std::chrono_literals;

constexpr platform::Duration kShortestPause = 250ms;
constexpr platform::Duration kLongestPause = 8s;
/// Between two checks of a running attempt.
constexpr platform::Duration kLookPause = 100ms;

} // namespace

Connector::Connector(std::string displayName, Connection::Prepare prepare)
    : m_displayName(std::move(displayName)),
      m_prepare(prepare),
      m_pause(kShortestPause) {
    // Read here, on the owner's thread: the attempts must not read the environment while it may change.
    if (m_displayName.empty())
        if (const char* name = std::getenv("DISPLAY"))
            m_displayName = name;
}

std::unique_ptr<Connection> Connector::connect(platform::Duration patience) {
    startAttempt();
    if (m_attempt.valid())
        m_attempt.wait_for(patience);
    m_retryAt = platform::monotonicNow();
    return retry(m_retryAt);
}

std::unique_ptr<Connection> Connector::retry(platform::Time now) {
    if (now < m_retryAt)
        return nullptr;
    if (!m_attempt.valid()) {
        if (now - m_retryAt > kLongestPause)
            m_pause = kShortestPause;
        startAttempt();
        m_retryAt = now + kLookPause;
        return nullptr;
    }
    if (m_attempt.wait_for(0s) != std::future_status::ready) {
        m_retryAt = now + kLookPause;
        return nullptr;
    }
    // Also after a success, so that a server that drops clients at once is not asked more often.
    m_retryAt = now + m_pause;
    m_pause = std::min(2 * m_pause, kLongestPause);
    return m_attempt.get();
}

void Connector::startAttempt() {
    // The thread is detached, since nothing can interrupt it. A connection that comes too late is destroyed
    // with the promise.
    std::promise<std::unique_ptr<Connection>> promise;
    m_attempt = promise.get_future();
    try {
        std::thread([name = m_displayName, prepare = m_prepare, result = std::move(promise)]() mutable {
            result.set_value(Connection::open(name, prepare));
        }).detach();
    } catch (const std::system_error&) {
        // No thread could be started; the next attempt may succeed.
        m_attempt = {};
    }
}

} // namespace glimra::desktop
