#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace glimra::desktop {

/// A thread for errands that may take long and that nobody waits for. It runs them one after the other.
class BackgroundWorker {
public:
    /// An errand must end soon after a stop is requested.
    using Errand = std::function<void(const std::stop_token&)>;

    /// At most `capacity` errands may wait; at least 1.
    explicit BackgroundWorker(std::size_t capacity) : m_capacity(capacity) {}
    /// Requests a stop of the current errand, drops those that wait, and returns when the thread has ended.
    ~BackgroundWorker() = default;

    /// Adds an errand. When too many wait, drops the oldest. Any thread; never blocks for long.
    void post(Errand errand);

private:
    void run(const std::stop_token& stop);

    const std::size_t m_capacity;
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::deque<Errand> m_waiting;
    // The last member, so the thread starts after the other members are created and ends before they are
    // destroyed.
    std::jthread m_thread{[this](const std::stop_token& stop) { run(stop); }};
};

} // namespace glimra::desktop
