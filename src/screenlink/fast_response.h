#pragma once

#include "platform/user_defaults.h"
#include "screenlink/message_pump.h"
#include "screenlink/message_queue.h"
#include "screenlink/screen_reader.h"

namespace glimra::screenlink {

/// Lets nothing wait that need not, where the player wants it: a token is taken and dispatched when it
/// arrives and not at the next tick of two timers, the reader looks more often, and that the game comes to
/// the front or leaves it is noticed when it happens. The rules stay those of the timers, which go on: one
/// message at a time, in the same order, and what has to wait for an animation or a fight does. Main thread.
class FastResponse {
public:
    struct Parts {
        platform::RunLoop& runLoop;
        platform::UserDefaults& defaults;
        platform::SystemLog& systemLog;
        platform::Workspace& workspace;
        MessageQueue& queue;
        MessagePump& pump;
        ReaderFlags& flags;
    };

    explicit FastResponse(const Parts& parts) : m_parts(parts) {}

    /// Takes the saved choice, and listens from now on. Call once, before the reader starts.
    void loadFastResponse();
    /// Remembered; holds from now on.
    void setFastResponse(bool isFast);

    /// Does what can be done now, if the player wants it fast.
    void takeWhatWaits();

private:
    void takeSoon();

    Parts m_parts;
};

} // namespace glimra::screenlink
