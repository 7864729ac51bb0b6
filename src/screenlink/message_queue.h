#pragma once

#include "events/event_state.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace glimra::screenlink {

/// Brings tokens from the reader into the buffer, which holds one message. It decides which tokens go to the
/// front of the queue, which messages have to wait while the keyboard shows a fight or a death, and where in
/// the queue one message ends and the next begins.
class MessageQueue {
public:
    MessageQueue(events::MessageState& messages, const events::EffectState& effects,
                 events::CooldownState& cooldowns);

    /// Puts a token into the queue. Its first character decides where: "R" replaces the whole queue, a few
    /// tokens go to the front, all others to the end. Any thread.
    void appendToMessageQueue(std::string_view token);

    /// `arrived` is called after each token, on the thread that brings it. Set it before there is a second
    /// thread.
    void observeArrivals(std::function<void()> arrived) { m_arrived = std::move(arrived); }

    /// Moves the next message into the buffer, if the buffer is free and the message need not wait. Returns
    /// whether anything was taken from the queue; it need not be a message. Main thread.
    bool handleMessageQueue();
    /// Nothing waits in the queue. Any thread.
    bool isEmpty() const;

private:
    std::string takeNext(std::string& queue);

    events::MessageState& m_messages;
    const events::EffectState& m_effects;
    events::CooldownState& m_cooldowns;
    std::function<void()> m_arrived;
};

} // namespace glimra::screenlink
