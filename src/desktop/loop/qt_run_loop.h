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

/// A run loop on top of Qt's. Time is CLOCK_MONOTONIC, and a nested `runUntil` also handles the user's
/// events.
///
/// Timers, posted jobs and the ends of waits all stand in one queue, ordered by due time, and one Qt timer
/// wakes the loop for the first of them. So nothing depends on Qt's rules for nested timers, and we compute
/// the grid of a repeating timer ourselves. Entries due within `kCoalescingSlack` of each other share a
/// wake-up; none runs early.
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
    void rest(platform::TimerId timer, platform::Duration longest) override;
    void rouse(platform::TimerId timer) override;
    void post(std::function<void()> job) override;
    [[nodiscard]] bool runUntil(platform::Time deadline) override;
    void terminate() override;
    bool isTerminated() const override { return m_terminated; }

    /// While this object exists, everything that was waiting when it was created stays waiting: timers, and
    /// calls of `runUntil` in progress. Only posted jobs and timers or waits started since then are served.
    /// Afterwards each held entry that is due runs once.
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
    /// Order of execution: by time, then by creation.
    using Place = std::pair<platform::Time, platform::TimerId>;
    enum class Kind { Timer, Job };
    struct Entry {
        /// 0 for an entry that runs once.
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
        /// The timer that ends the wait.
        platform::TimerId end = 0;
        /// How many Qt loops run, this one included, while nothing runs inside it.
        int level = 0;
        bool over = false;
    };

    platform::TimerId enqueue(platform::Time due, Entry entry);
    void takePostedJobs();
    void serveDue();
    void serve(Queue::iterator place);
    /// The first entry that is not held.
    Queue::iterator front();
    bool isHeld(const Queue::value_type& entry) const;
    void armWakeUp();
    /// Whether nothing may run before the innermost wait has returned.
    bool waitIsReturning() const;

    Queue m_queue;
    std::unordered_map<platform::TimerId, platform::Time> m_dueTimes;
    /// Repeating timers whose action is running; cancelling one removes it from here.
    std::set<platform::TimerId> m_running;
    /// Until when repeating timers rest.
    std::unordered_map<platform::TimerId, platform::Time> m_resting;
    platform::TimerId m_lastId = 0;
    std::vector<Wait*> m_waits;
    /// The highest id that is held; 0 when none is.
    platform::TimerId m_lastHeld = 0;
    bool m_terminated = false;

    QBasicTimer m_wakeUp;
    platform::Time m_wakeUpAt{0};

    std::mutex m_postedLock;
    std::vector<PostedJob> m_posted;
};

} // namespace glimra::desktop
