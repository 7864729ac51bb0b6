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

    /// One tick of the timer. It must not be called while a call is still running: the buffer is emptied only
    /// after the dispatcher has returned.
    void readMsgQueue();

    /// How many messages went to the dispatcher so far.
    std::uint64_t dispatchedMessages() const { return m_dispatchedMessages; }
    /// Whether the game was in front at the last tick.
    bool gameIsInFront() const { return m_gameIsInFront; }

private:
    void handOver();
    void watchFront();
    void refresh();

    Parts m_parts;
    std::uint64_t m_dispatchedMessages = 0;
    bool m_gameIsInFront = false;
};

} // namespace glimra::screenlink
