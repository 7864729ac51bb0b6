#pragma once

#include "platform/user_defaults.h"
#include "screenlink/message_pump.h"
#include "screenlink/message_queue.h"
#include "screenlink/screen_reader.h"
#include "screenlink/stale_effects.h"

#include <optional>

namespace glimra::screenlink {

/// When messages are taken from the queue and dispatched: by two timers or, where the player wants a fast
/// response, also as soon as they come. Then nothing waits that need not: a token is taken and dispatched
/// when it arrives, the reader looks more often, and that the game comes to the front or leaves it is noticed
/// when it happens. The rules are the same: one message at a time, in the same order, and what has to wait
/// for an animation or a fight does. Main thread.
class MessageClock {
public:
    struct Parts {
        platform::RunLoop& runLoop;
        platform::UserDefaults& defaults;
        platform::SystemLog& systemLog;
        platform::Workspace& workspace;
        MessageQueue& queue;
        MessagePump& pump;
        StaleEffects& staleEffects;
        const events::EffectState& effects;
        ReaderFlags& flags;
    };

    explicit MessageClock(const Parts& parts) : m_parts(parts) {}

    /// Takes the saved choice of a fast response.
    void loadFastResponse();
    /// Remembered; holds from now on.
    void setFastResponse(bool isFast);

    /// Starts the timers. Call once, before the reader starts.
    void start();

private:
    void readTick();
    void queueTick();
    void messageArrived();
    /// Takes what can be taken now, in a timer of its own.
    void takeSoon();
    void takeWhatWaits();

    Parts m_parts;
    std::optional<platform::TimerId> myTimer;
    std::optional<platform::TimerId> myTimer2;
};

} // namespace glimra::screenlink
