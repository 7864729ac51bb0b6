#pragma once

#include "events/dispatcher.h"
#include "platform/run_loop.h"
#include "platform/workspace.h"

#include <cstdint>

namespace glimra::screenlink {

/// Hands the buffered message to the dispatcher, and watches which application is in front so that the
/// keyboard stays as it should be while the game is there. Main thread.
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

    /// One tick. Never called inside itself: the buffer is emptied only after the dispatcher has returned.
    void readMsgQueue();

    /// How many messages went to the dispatcher so far.
    std::uint64_t dispatchedMessages() const { return m_dispatchedMessages; }
    /// Whether the last look at the workspace found the game in front; no before the first.
    bool gameIsInFront() const { return m_gameIsInFront; }

private:
    void handOver();
    void watchFront();
    void refresh();

    Parts m;
    std::uint64_t m_dispatchedMessages = 0;
    bool m_gameIsInFront = false;
};

} // namespace glimra::screenlink
