#pragma once

#include "platform/run_loop.h"

#include <map>
#include <set>
#include <utility>

namespace glimra::simulated {

/// A run loop without real time: the clock stands still but for `runUntil`, which moves it from one due
/// moment to the next. Starts at 0. All of it, `post` too, belongs to one thread.
///
/// Posted jobs are due at the moment they were posted. What is overdue because a nested wait passed over its
/// moment is served as soon as the loop runs again; the clock never goes back.
class SimulatedRunLoop final : public platform::RunLoop {
public:
    platform::Time now() const override { return m_now; }
    /// Counted from the beginning of 2000.
    std::string dateAndTime(platform::Time moment) const override;

    platform::TimerId repeat(platform::Duration period, std::function<void()> action) override;
    platform::TimerId after(platform::Duration delay, std::function<void()> action) override;
    void cancel(platform::TimerId timer) override;
    void post(std::function<void()> job) override;

    /// Leaves the clock at `deadline`, or later where something served has itself waited past it; where the
    /// application ended, at that moment.
    [[nodiscard]] bool runUntil(platform::Time deadline) override;

    void terminate() override { m_terminated = true; }
    bool isTerminated() const override { return m_terminated; }

    /// Like `repeat`, but first at `first`, which is also where the grid begins.
    platform::TimerId repeatFrom(platform::Time first, platform::Duration period,
                                 std::function<void()> action);

private:
    struct Entry {
        platform::Time due;
        /// 0 for what runs once.
        platform::Duration period;
        std::function<void()> action;
    };

    platform::TimerId add(Entry entry);
    void serve(platform::TimerId id);

    platform::Time m_now{0};
    bool m_terminated = false;
    platform::TimerId m_lastId = 0;
    /// Numbers grow, so their order is the order of creation.
    std::map<platform::TimerId, Entry> m_entries;
    /// What waits to be served, first come first; an entry whose action runs is not in it.
    std::set<std::pair<platform::Time, platform::TimerId>> m_queue;
};

} // namespace glimra::simulated
