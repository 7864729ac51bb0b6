#pragma once

#include "events/dispatcher.h"
#include "platform/run_loop.h"
#include "platform/workspace.h"

#include <cstdint>

namespace glimra::screenlink {

/// Shows while the game is not in front, if the user has chosen that.
inline constexpr int kAwayProfile = 2;

/// Hands the buffered message to the dispatcher. It also watches which application is in front: as long as
/// that is the game, it shows the lighting anew every few seconds. Main thread.
class MessagePump {
public:
    struct Parts {
        platform::RunLoop& runLoop;
        platform::Workspace& workspace;
        platform::LedDriver& driver;
        lighting::LightingOutput& lighting;
        events::Dispatcher& dispatcher;
        events::MessageState& messages;
        events::EffectState& effects;
        const events::OptionState& options;
        const lighting::LightingState& lightingState;
        const profiles::ProfileState& profile;
    };

    explicit MessagePump(const Parts& parts);

    /// One tick of the timer. Must not be called while a message is being handed over.
    void readMsgQueue();
    /// Hands the buffered message over, or ends the whisper signal before it; returns whether there was one.
    /// Must not be called while a message is being handed over.
    bool handOver();
    /// A message is with the dispatcher, perhaps waiting for its animation. The buffer keeps it so long.
    bool isHandingOver() const { return m_isHandingOver; }
    /// Nothing waits in the buffer, and the game is not in front: until one of them changes, a tick does
    /// nothing.
    bool isIdle() const;
    /// Like the tick, but only where the game has come to the front or left it since the last one.
    void watchForChange();

    /// How many messages went to the dispatcher so far.
    std::uint64_t dispatchedMessages() const { return m_dispatchedMessages; }
    /// Whether the game was in front at the last tick.
    bool gameIsInFront() const { return m_gameIsInFront; }

private:
    void dispatch(const std::string& message);
    void watchFront();
    void refresh();

    Parts m_parts;
    std::uint64_t m_dispatchedMessages = 0;
    bool m_isHandingOver = false;
    bool m_gameIsInFront = false;
};

} // namespace glimra::screenlink
