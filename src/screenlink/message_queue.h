#pragma once

#include "events/event_state.h"

#include <string>
#include <string_view>

namespace glimra::screenlink {

/// The way of a token from the reader into the one-message buffer: who jumps the queue, who waits while the
/// keyboard shows a fight or a death, and where one message ends and the next begins.
class MessageQueue {
public:
    MessageQueue(events::MessageState& messages, const events::EffectState& effects,
                 events::CooldownState& cooldowns);

    /// Puts a token into the queue, by its first character: "R" replaces everything, a few go to the front,
    /// the others to the end. Any thread.
    void appendToMessageQueue(std::string_view token);

    /// Moves the next message into the free buffer, if there is one that may go. Main thread.
    void handleMessageQueue();

private:
    std::string takeNext(std::string& queue);

    events::MessageState& m_messages;
    const events::EffectState& m_effects;
    events::CooldownState& m_cooldowns;
};

} // namespace glimra::screenlink
