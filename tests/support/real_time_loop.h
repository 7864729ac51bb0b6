#pragma once

#include "simulated/run_loop.h"

#include <algorithm>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace glimra::tests {

/// The simulated loop, moved by the real clock and open to other threads: all that a reader's thread needs,
/// and nothing that ThreadSanitizer cannot look into.
class RealTimeLoop final : public platform::RunLoop {
public:
    platform::Time now() const override { return std::chrono::steady_clock::now() - m_start; }
    std::string dateAndTime(platform::Time moment) const override { return m_loop.dateAndTime(moment); }
    platform::TimerId repeat(platform::Duration period, std::function<void()> action) override {
        return m_loop.repeat(period, std::move(action));
    }
    platform::TimerId after(platform::Duration delay, std::function<void()> action) override {
        return m_loop.after(delay, std::move(action));
    }
    void cancel(platform::TimerId timer) override { m_loop.cancel(timer); }
    void post(std::function<void()> job) override {
        const std::scoped_lock lock(m_postedLock);
        m_posted.push_back(std::move(job));
    }
    [[nodiscard]] bool runUntil(platform::Time deadline) override {
        while (true) {
            takePosted();
            const platform::Time moment = now();
            if (!m_loop.runUntil(std::min(moment, deadline)))
                return false;
            if (moment >= deadline)
                return true;
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
    }
    void terminate() override { m_loop.terminate(); }
    bool isTerminated() const override { return m_loop.isTerminated(); }

private:
    void takePosted() {
        std::vector<std::function<void()>> jobs;
        {
            const std::scoped_lock lock(m_postedLock);
            jobs.swap(m_posted);
        }
        for (std::function<void()>& job : jobs)
            m_loop.post(std::move(job));
    }

    simulated::SimulatedRunLoop m_loop;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    std::mutex m_postedLock;
    std::vector<std::function<void()>> m_posted;
};

} // namespace glimra::tests
