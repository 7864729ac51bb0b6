#include "desktop/loop/qt_run_loop.h"

#include "platform/date_text.h"
#include "platform/monotonic_clock.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <algorithm>

namespace glimra::desktop {

using platform::Duration;
using platform::Time;
using platform::TimerId;

namespace {

const QEvent::Type kJobsPosted = static_cast<QEvent::Type>(QEvent::registerEventType());

/// The first point after `moment` on the grid that contains `point`; `point` itself when `moment` is before
/// it.
Time nextGridPoint(Time point, Duration period, Time moment) {
    if (moment < point)
        return point;
    return point + period * ((moment - point) / period + 1);
}

} // namespace

Time QtRunLoop::now() const {
    return platform::monotonicNow();
}

std::string QtRunLoop::dateAndTime(Time moment) const {
    using std::chrono::system_clock;
    const auto fromNow = std::chrono::duration_cast<system_clock::duration>(moment - now());
    return platform::dateText(system_clock::now() + fromNow);
}

TimerId QtRunLoop::repeat(Duration period, std::function<void()> action) {
    return enqueue(now() + period, {period, std::move(action)});
}

TimerId QtRunLoop::after(Duration delay, std::function<void()> action) {
    return enqueue(now() + delay, {Duration::zero(), std::move(action)});
}

TimerId QtRunLoop::enqueue(Time due, Entry entry) {
    const TimerId id = ++m_lastId;
    if (m_terminated)
        return id;
    m_queue.emplace(Place{due, id}, std::move(entry));
    m_dueTimes.emplace(id, due);
    armWakeUp();
    return id;
}

void QtRunLoop::cancel(TimerId timer) {
    m_running.erase(timer);
    m_resting.erase(timer);
    const auto found = m_dueTimes.find(timer);
    if (found == m_dueTimes.end())
        return;
    m_queue.erase({found->second, timer});
    m_dueTimes.erase(found);
    armWakeUp();
}

void QtRunLoop::rest(TimerId timer, Duration longest) {
    m_resting[timer] = now() + longest;
}

void QtRunLoop::rouse(TimerId timer) {
    if (m_resting.erase(timer) == 0)
        return;
    const auto found = m_dueTimes.find(timer);
    if (found == m_dueTimes.end())
        return;
    auto node = m_queue.extract(Place{found->second, timer});
    const Duration period = node.mapped().period;
    const Time due = found->second - period * ((found->second - now()) / period);
    node.key().first = due;
    found->second = due;
    m_queue.insert(std::move(node));
    armWakeUp();
}

void QtRunLoop::post(std::function<void()> job) {
    const std::scoped_lock lock(m_postedLock);
    m_posted.push_back({platform::monotonicNow(), std::move(job)});
    // One event is enough for all jobs posted until the loop handles it.
    if (m_posted.size() == 1)
        QCoreApplication::postEvent(this, new QEvent(kJobsPosted));
}

void QtRunLoop::takePostedJobs() {
    std::vector<PostedJob> jobs;
    {
        const std::scoped_lock lock(m_postedLock);
        jobs.swap(m_posted);
    }
    // Jobs are queued instead of run here, so that a job that waits does not delay those behind it.
    for (PostedJob& posted : jobs)
        enqueue(posted.postedAt, {Duration::zero(), std::move(posted.job), Kind::Job});
}

bool QtRunLoop::runUntil(Time deadline) {
    if (m_terminated)
        return false;
    Wait wait;
    m_waits.push_back(&wait);
    wait.end = enqueue(deadline, {Duration::zero(), [&wait] {
                                      wait.over = true;
                                      wait.loop.quit();
                                  }});
    wait.level = thread()->loopLevel() + 1;
    wait.loop.exec();
    m_waits.pop_back();
    // Qt ends all event loops when it quits by itself; then nothing may run any more either.
    if (!wait.over)
        terminate();
    cancel(wait.end);
    return !m_terminated;
}

void QtRunLoop::terminate() {
    m_terminated = true;
    m_wakeUp.stop();
    m_queue.clear();
    m_dueTimes.clear();
    m_running.clear();
    m_resting.clear();
    for (Wait* wait : m_waits) {
        wait->over = true;
        wait->loop.quit();
    }
}

void QtRunLoop::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_wakeUp.timerId())
        return;
    m_wakeUp.stop();
    serveDue();
}

void QtRunLoop::customEvent(QEvent* event) {
    if (event->type() == kJobsPosted)
        serveDue();
}

void QtRunLoop::serveDue() {
    takePostedJobs();
    // Entries that become due meanwhile wait for the next wake-up: a timer that takes longer than its period
    // must not block the user's events.
    const Time limit = now();
    for (auto next = front(); next != m_queue.end() && next->first.first <= limit && !waitIsReturning();
         next = front())
        serve(next);
    armWakeUp();
}

QtRunLoop::Queue::iterator QtRunLoop::front() {
    return std::ranges::find_if(m_queue, [this](const auto& entry) { return !isHeld(entry); });
}

bool QtRunLoop::isHeld(const Queue::value_type& entry) const {
    return entry.second.kind == Kind::Timer && entry.first.second <= m_lastHeld;
}

bool QtRunLoop::waitIsReturning() const {
    // While a Qt loop runs inside the wait, of a menu or a dialog, the wait cannot return, and what is due is
    // served from there.
    return !m_waits.empty() && m_waits.back()->over && m_waits.back()->end > m_lastHeld &&
           thread()->loopLevel() <= m_waits.back()->level;
}

void QtRunLoop::serve(Queue::iterator place) {
    auto node = m_queue.extract(place);
    const auto [due, id] = node.key();
    Entry& entry = node.mapped();
    m_dueTimes.erase(id);
    if (entry.period == Duration::zero()) {
        entry.action();
        return;
    }
    m_running.insert(id);
    m_resting.erase(id);
    entry.action();
    if (m_running.erase(id) == 0)
        return;
    const auto rest = m_resting.find(id);
    const Time from = rest == m_resting.end() ? now() : std::max(now(), rest->second - entry.period);
    const Time next = nextGridPoint(due, entry.period, from);
    node.key() = {next, id};
    m_queue.insert(std::move(node));
    m_dueTimes.emplace(id, next);
}

void QtRunLoop::armWakeUp() {
    const auto first = front();
    if (m_terminated || first == m_queue.end()) {
        m_wakeUp.stop();
        return;
    }
    Time wakeUpAt = first->first.first;
    const auto beyond = m_queue.upper_bound({wakeUpAt + kCoalescingSlack, ~TimerId{0}});
    for (auto entry = first; entry != beyond; ++entry)
        if (!isHeld(*entry))
            wakeUpAt = entry->first.first;
    if (m_wakeUp.isActive() && m_wakeUpAt == wakeUpAt)
        return;
    m_wakeUpAt = wakeUpAt;
    // Qt's timers count whole milliseconds; rounding up avoids waking too early. For distant times the timer
    // wakes us once an hour without need.
    const auto delay = std::chrono::ceil<std::chrono::milliseconds>(wakeUpAt - now());
    constexpr std::chrono::milliseconds kLongest = std::chrono::hours(1);
    const auto bounded = std::clamp(delay, std::chrono::milliseconds::zero(), kLongest);
    m_wakeUp.start(static_cast<int>(bounded.count()), Qt::PreciseTimer, this);
}

QtRunLoop::Hold::Hold(QtRunLoop& loop) : m_loop(loop), m_before(loop.m_lastHeld) {
    m_loop.m_lastHeld = m_loop.m_lastId;
    m_loop.armWakeUp();
}

QtRunLoop::Hold::~Hold() {
    m_loop.m_lastHeld = m_before;
    m_loop.armWakeUp();
}

} // namespace glimra::desktop
