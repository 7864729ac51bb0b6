#pragma once

#include "platform/run_loop.h"

#include <map>
#include <set>
#include <utility>

namespace glimra::simulated {

/// A run loop without real time. Only `runUntil` advances the clock, from one due time to the next. The clock
/// starts at 0. Everything, including `post`, must be called on one thread.
///
/// Posted jobs are due when they are posted. An entry whose due time passed during a nested wait runs as soon
/// as the loop runs again; the clock never goes back.
class SimulatedRunLoop final : public platform::RunLoop {
public:
    platform::Time now() const override { return m_now; }
    /// The clock's 0 is the beginning of the year 2000.
    std::string dateAndTime(platform::Time moment) const override;

    platform::TimerId repeat(platform::Duration period, std::function<void()> action) override;
    platform::TimerId after(platform::Duration delay, std::function<void()> action) override;
    void cancel(platform::TimerId timer) override;
    void post(std::function<void()> job) override;

    /// Leaves the clock at `deadline`, or later when an action has itself waited past it. When the
    /// application terminates, the clock stays at that time.
    [[nodiscard]] bool runUntil(platform::Time deadline) override;

    void terminate() override { m_terminated = true; }
    bool isTerminated() const override { return m_terminated; }

    /// Like `repeat`, but the grid begins at `first`, which is also the time of the first run.
    platform::TimerId repeatFrom(platform::Time first, platform::Duration period,
                                 std::function<void()> action);

private:
    struct Entry {
        platform::Time due;
        /// 0 for an entry that runs once.
        platform::Duration period;
        std::function<void()> action;
    };

    platform::TimerId add(Entry entry);
    void serve(platform::TimerId id);

    platform::Time m_now{0};
    bool m_terminated = false;
    platform::TimerId m_lastId = 0;
    /// Ids increase, so their order is the order of creation.
    std::map<platform::TimerId, Entry> m_entries;
    /// Waiting entries, by due time and then by creation. An entry whose action is running is not in it.
    std::set<std::pair<platform::Time, platform::TimerId>> m_queue;
};

} // namespace glimra::simulated
