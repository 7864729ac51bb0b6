#pragma once

#include "platform/locked.h"
#include "simulated/run_loop.h"

#include <algorithm>
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
        m_posted.with([&](auto& jobs) { jobs.push_back(std::move(job)); });
    }
    [[nodiscard]] bool runUntil(platform::Time deadline) override {
        while (true) {
            for (auto& job : m_posted.with([](auto& jobs) { return std::exchange(jobs, {}); }))
                m_loop.post(std::move(job));
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
    simulated::SimulatedRunLoop m_loop;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    platform::Locked<std::vector<std::function<void()>>> m_posted;
};

} // namespace glimra::tests
