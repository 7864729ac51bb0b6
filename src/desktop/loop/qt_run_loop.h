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

    /// While it lives, what waits already goes on waiting: timers, and waits under way. Only posted jobs are
    /// served, and what began since. Afterwards all that fell due meanwhile is, each once.
    class Hold {
    public:
        explicit Hold(QtRunLoop& loop);
        ~Hold();
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        QtRunLoop& m_loop;
        const platform::TimerId m_before;
    };

protected:
    void timerEvent(QTimerEvent* event) override;
    void customEvent(QEvent* event) override;

private:
    /// Order of service: by time, then by creation.
    using Place = std::pair<platform::Time, platform::TimerId>;
    enum class Kind { Timer, Job };
    struct Entry {
        /// 0 for what runs once.
        platform::Duration period{0};
        std::function<void()> action;
        Kind kind = Kind::Timer;
    };
    using Queue = std::map<Place, Entry>;
    struct PostedJob {
        platform::Time postedAt;
        std::function<void()> job;
    };
    struct Wait {
        QEventLoop loop;
        /// Of the timer that ends it.
        platform::TimerId end = 0;
        /// How many Qt loops run, this one included, while nothing runs inside it.
        int level = 0;
        bool over = false;
    };

    platform::TimerId enqueue(platform::Time due, Entry entry);
    void takePostedJobs();
    void serveDue();
    void serve(Queue::iterator place);
    /// The first in the queue that is not held.
    Queue::iterator front();
    bool isHeld(const Queue::value_type& entry) const;
    void armWakeUp();
    /// Whether nothing may run before the innermost wait has returned.
    bool waitIsReturning() const;

    Queue m_queue;
    std::unordered_map<platform::TimerId, platform::Time> m_dueTimes;
    /// Repeating timers whose action is running; cancelling one takes it out.
    std::set<platform::TimerId> m_running;
    platform::TimerId m_lastId = 0;
    std::vector<Wait*> m_waits;
    /// The last of those that are held; 0 when none is.
    platform::TimerId m_lastHeld = 0;
    bool m_terminated = false;

    QBasicTimer m_wakeUp;
    platform::Time m_wakeUpAt{0};

    std::mutex m_postedLock;
    std::vector<PostedJob> m_posted;
};

} // namespace glimra::desktop
