#pragma once

#include "platform/run_loop.h"

#include <QBasicTimer>
#include <QEventLoop>
#include <QObject>

#include <map>
#include <mutex>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

namespace glimra::desktop {

/// The run loop on Qt's: time is CLOCK_MONOTONIC, and a nested `runUntil` serves the user's events too.
///
/// All that is waiting, timers, posted jobs and the ends of waits alike, stands in one queue by due time, and
/// one Qt timer wakes the loop for its front. So nothing depends on Qt's rules for nested timers, and the
/// grid of a repeating timer is our own reckoning. Entries that fall due within `kCoalescingSlack` of each
/// other share a wake-up; none runs early.
class QtRunLoop final : public QObject, public platform::RunLoop {
public:
    static constexpr platform::Duration kCoalescingSlack = std::chrono::milliseconds(1);

    QtRunLoop() = default;
    ~QtRunLoop() override = default;

    platform::Time now() const override;
    std::string dateAndTime(platform::Time moment) const override;
    platform::TimerId repeat(platform::Duration period, std::function<void()> action) override;
    platform::TimerId after(platform::Duration delay, std::function<void()> action) override;
    void cancel(platform::TimerId timer) override;
    void post(std::function<void()> job) override;
    [[nodiscard]] bool runUntil(platform::Time deadline) override;
    void terminate() override;
    bool isTerminated() const override { return m_terminated; }

    /// The same clock, for any thread.
    static platform::Time monotonicNow();

protected:
    void timerEvent(QTimerEvent* event) override;
    void customEvent(QEvent* event) override;

private:
    /// Order of service: by time, then by creation.
    using Place = std::pair<platform::Time, platform::TimerId>;
    struct Entry {
        /// 0 for what runs once.
        platform::Duration period{0};
        std::function<void()> action;
    };
    struct PostedJob {
        platform::Time postedAt;
        std::function<void()> job;
    };
    struct Wait {
        QEventLoop loop;
        bool over = false;
    };

    platform::TimerId enqueue(platform::Time due, Entry entry);
    void takePostedJobs();
    void serveDue();
    void serveFront();
    void armWakeUp();
    bool innermostWaitIsOver() const { return !m_waits.empty() && m_waits.back()->over; }

    std::map<Place, Entry> m_queue;
    std::unordered_map<platform::TimerId, platform::Time> m_dueTimes;
    /// Repeating timers whose action is running; cancelling one takes it out.
    std::set<platform::TimerId> m_running;
    platform::TimerId m_lastId = 0;
    std::vector<Wait*> m_waits;
    bool m_terminated = false;

    QBasicTimer m_wakeUp;
    platform::Time m_wakeUpAt{0};

    std::mutex m_postedLock;
    std::vector<PostedJob> m_posted;
};

} // namespace glimra::desktop
