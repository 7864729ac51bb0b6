#include "keyboards/device/writer_plan.h"

#include <algorithm>

namespace glimra::keyboards {

void WriterPlan::show(const KeyboardModel& model, Time now) {
    m_model = model;
    m_modelAt = std::min(m_modelAt.value_or(Time::max()), now + kGather);
}

void WriterPlan::resendAll(Time now) {
    m_allKeysNeeded = true;
    m_modelAt = now;
}

void WriterPlan::found(const DevicePace& pace, Time now) {
    m_open = true;
    m_foundAt = now;
    m_pace = pace;
    m_deviceReadyAt = now;
    m_effectsFrom = now;
    m_refreshAt = Time::max();
    resendAll(now);
}

void WriterPlan::notFound(Duration retryWithin, Time now) {
    pauseSearch(retryWithin, now);
}

void WriterPlan::lookAgain(Time now) {
    if (m_open)
        return;
    m_pause = kFirstPause;
    m_searchAt = std::min(m_searchAt, now + kAfterNews);
}

void WriterPlan::written(Time now) {
    if (m_frameSize == kLightCount)
        m_refreshAt = now + std::max(kRefresh, kRefreshShare * (now - m_frameBegan));
}

void WriterPlan::lost(Time now) {
    m_open = false;
    m_repeatAt.reset();
    if (now - m_foundAt >= kStable)
        m_pause = kFirstPause;
    pauseSearch(kLongestPauseAfterLoss, now);
}

void WriterPlan::pauseSearch(Duration longest, Time now) {
    m_searchAt = now + std::min(m_pause, longest);
    m_pause = std::min(2 * m_pause, kLongestPause);
}

WriterPlan::Step WriterPlan::next(Time now) {
    if (!m_open)
        return search(now);
    if (!m_model)
        return {};
    if (m_refreshAt <= now) {
        m_refreshAt = Time::max();
        resendAll(now);
    }
    if (frameDue() <= now) {
        const std::size_t changes = collectChanges(now);
        m_modelAt.reset();
        m_effectsAt = m_model->nextChange(now);
        if (changes > 0)
            return write(changes, now);
    }
    if (m_repeatAt && *m_repeatAt <= now) {
        m_repeatAt.reset();
        frameBegins(now);
        return {.kind = Step::Kind::Write, .keys = std::span(m_frame).first(m_frameSize)};
    }
    return wait(now);
}

WriterPlan::Step WriterPlan::search(Time now) const {
    if (m_searchAt <= now)
        return {.kind = Step::Kind::Search};
    return {.until = m_searchAt};
}

/// Puts the keys whose colours differ from those that were sent into the frame; returns how many they are.
std::size_t WriterPlan::collectChanges(Time now) {
    const LightColors colors = m_model->lightsAt(now);
    std::size_t count = 0;
    for (std::size_t key = 0; key < kLightCount; ++key)
        if (m_allKeysNeeded || colors[key] != m_sent[key]) {
            m_frame[count++] = {key, colors[key]};
            m_sent[key] = colors[key];
        }
    m_allKeysNeeded = false;
    return count;
}

WriterPlan::Step WriterPlan::write(std::size_t count, Time now) {
    m_frameSize = count;
    frameBegins(now);
    if (count == kLightCount)
        m_refreshAt = Time::max();
    if (m_pace.repeatAfter > Duration::zero())
        m_repeatAt = now + m_pace.repeatAfter;
    return {.kind = Step::Kind::Write, .keys = std::span(m_frame).first(count)};
}

void WriterPlan::frameBegins(Time now) {
    m_frameBegan = now;
    m_deviceReadyAt = now + m_pace.interval;
    m_effectsFrom = std::max(m_effectsFrom, now - kLateness) + kFrame;
}

/// When the next frame may have to begin; `Time::max()` when nothing changes.
Time WriterPlan::frameDue() const {
    Time due = Time::max();
    if (m_modelAt)
        due = std::max(*m_modelAt, m_effectsFrom - kFrame);
    if (m_effectsAt)
        due = std::min(due, std::max(*m_effectsAt, m_effectsFrom));
    return due == Time::max() ? due : std::max(due, m_deviceReadyAt);
}

WriterPlan::Step WriterPlan::wait(Time now) const {
    const Time due = frameDue();
    Step step{.until = std::min(due, m_refreshAt)};
    step.frameIsDue = due <= std::max({m_deviceReadyAt, m_effectsFrom - kFrame, now + kGather});
    if (m_repeatAt)
        step.until = std::min(*step.until, *m_repeatAt);
    if (step.until == Time::max())
        step.until.reset();
    return step;
}

} // namespace glimra::keyboards
