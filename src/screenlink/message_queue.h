#pragma once

#include "events/event_state.h"

#include <string>
#include <string_view>

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

    /// Moves the next message into the buffer, if the buffer is free and the message need not wait. Main
    /// thread.
    void handleMessageQueue();

private:
    std::string takeNext(std::string& queue);

    events::MessageState& m_messages;
    const events::EffectState& m_effects;
    events::CooldownState& m_cooldowns;
};

} // namespace glimra::screenlink
