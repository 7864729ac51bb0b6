#include "simulated/run_loop.h"

#include "platform/date_text.h"

#include <algorithm>

namespace glimra::simulated {

using platform::Duration;
using platform::Time;
using platform::TimerId;

std::string SimulatedRunLoop::dateAndTime(Time moment) const {
    using namespace std::chrono;
    constexpr sys_days kBeginning = 2000y / January / 1;
    return platform::dateText(kBeginning + floor<seconds>(moment));
}

TimerId SimulatedRunLoop::repeat(Duration period, std::function<void()> action) {
    return repeatFrom(m_now + period, period, std::move(action));
}

TimerId SimulatedRunLoop::after(Duration delay, std::function<void()> action) {
    return add({m_now + delay, Duration::zero(), std::move(action)});
}

void SimulatedRunLoop::post(std::function<void()> job) {
    add({m_now, Duration::zero(), std::move(job)});
}

TimerId SimulatedRunLoop::repeatFrom(Time first, Duration period, std::function<void()> action) {
    return add({first, period, std::move(action)});
}

TimerId SimulatedRunLoop::add(Entry entry) {
    const TimerId id = ++m_lastId;
    m_queue.emplace(entry.due, id);
    m_entries.emplace(id, std::move(entry));
    return id;
}

void SimulatedRunLoop::cancel(TimerId timer) {
    const auto found = m_entries.find(timer);
    if (found == m_entries.end())
        return;
    m_queue.erase({found->second.due, timer});
    m_entries.erase(found);
}

bool SimulatedRunLoop::runUntil(Time deadline) {
    while (!m_terminated && !m_queue.empty() && m_queue.begin()->first <= deadline) {
        const auto [due, id] = *m_queue.begin();
        m_queue.erase(m_queue.begin());
        m_now = std::max(m_now, due);
        serve(id);
    }
    if (m_terminated)
        return false;
    m_now = std::max(m_now, deadline);
    return true;
}

void SimulatedRunLoop::serve(TimerId id) {
    const auto found = m_entries.find(id);
    // The action may cancel its own timer, which destroys the entry, so it is moved out first.
    std::function<void()> action = std::move(found->second.action);
    if (found->second.period == Duration::zero()) {
        m_entries.erase(found);
        action();
        return;
    }
    action();
    const auto repeated = m_entries.find(id);
    if (repeated == m_entries.end())
        return;
    Entry& entry = repeated->second;
    entry.due += ((m_now - entry.due) / entry.period + 1) * entry.period;
    entry.action = std::move(action);
    m_queue.emplace(entry.due, id);
}

} // namespace glimra::simulated
