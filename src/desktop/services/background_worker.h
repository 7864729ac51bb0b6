#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace glimra::desktop {

/// A thread for errands that may take long and that nobody waits for, done one after the other.
class BackgroundWorker {
public:
    /// An errand must end soon after a stop is asked for.
    using Errand = std::function<void(const std::stop_token&)>;

    /// `capacity` is how many errands may wait, at least 1.
    explicit BackgroundWorker(std::size_t capacity) : m_capacity(capacity) {}
    /// Stops the errand under way, forgets those that wait, and returns when the thread has ended.
    ~BackgroundWorker() = default;

    /// Adds an errand, and forgets the one that has waited longest when there are too many. Any thread; never
    /// blocks for long.
    void post(Errand errand);

private:
    void run(const std::stop_token& stop);

    const std::size_t m_capacity;
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::deque<Errand> m_waiting;
    // The last member: it must end before what it uses, and begin after.
    std::jthread m_thread{[this](const std::stop_token& stop) { run(stop); }};
};

} // namespace glimra::desktop
