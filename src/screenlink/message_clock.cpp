#include "screenlink/message_clock.h"

#include "platform/stored_values.h"

namespace glimra::screenlink {

namespace {

constexpr platform::Duration kReadPeriod = std::chrono::milliseconds(200);
constexpr platform::Duration kQueuePeriod = std::chrono::milliseconds(100);
/// How long the timers may rest while there is nothing to do.
constexpr platform::Duration kLongestRest = std::chrono::seconds(2);

} // namespace

void MessageClock::loadFastResponse() {
    const platform::SettingsReader settings{m_parts.defaults, m_parts.systemLog};
    m_parts.flags.fastResponse = settings.value(platform::settings::kFastResponse);
}

void MessageClock::setFastResponse(bool isFast) {
    m_parts.flags.fastResponse = isFast;
    m_parts.defaults.set(platform::settings::kFastResponse.key, isFast);
    takeSoon();
}

void MessageClock::start() {
    myTimer = m_parts.runLoop.repeat(kReadPeriod, [this] { readTick(); });
    myTimer2 = m_parts.runLoop.repeat(kQueuePeriod, [this] { queueTick(); });
    m_parts.queue.observeArrivals([this] { m_parts.runLoop.post([this] { messageArrived(); }); });
    m_parts.workspace.observeFront([this] {
        m_parts.runLoop.rouse(*myTimer);
        takeSoon();
    });
}

void MessageClock::readTick() {
    // In the animation of a message that came by the fast way.
    if (m_parts.pump.isHandingOver())
        return;
    m_parts.pump.readMsgQueue();
    if (m_parts.runLoop.isTerminated())
        return;
    m_parts.staleEffects.check();
    takeWhatWaits();
    if (m_parts.pump.isIdle() && !m_parts.effects.isAnyPlaying())
        m_parts.runLoop.rest(*myTimer, kLongestRest);
}

void MessageClock::queueTick() {
    m_parts.queue.handleMessageQueue();
    if (!m_parts.pump.isIdle())
        m_parts.runLoop.rouse(*myTimer);
    else if (m_parts.queue.isEmpty())
        m_parts.runLoop.rest(*myTimer2, kLongestRest);
}

void MessageClock::messageArrived() {
    m_parts.runLoop.rouse(*myTimer2);
    takeSoon();
}

void MessageClock::takeSoon() {
    // Timers, unlike jobs and events, wait while a dialog holds the application.
    if (m_parts.flags.fastResponse)
        m_parts.runLoop.after({}, [this] { takeWhatWaits(); });
}

void MessageClock::takeWhatWaits() {
    // While an animation plays, whoever plays it comes back here when it is done.
    while (m_parts.flags.fastResponse && !m_parts.pump.isHandingOver() && !m_parts.runLoop.isTerminated()) {
        const bool isTaken = m_parts.queue.handleMessageQueue();
        const bool isHandedOver = m_parts.pump.handOver();
        if (!isTaken && !isHandedOver) {
            m_parts.pump.watchForChange();
            return;
        }
    }
}

} // namespace glimra::screenlink
