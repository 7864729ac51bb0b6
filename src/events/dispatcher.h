#pragma once

#include "events/event_state.h"
#include "lighting/lighting_output.h"
#include "platform/message_log.h"
#include "profiles/profile_state.h"

#include <string_view>

namespace glimra::events {

/// Turns one message into one lighting action. It keeps no state of its own. Main thread.
class Dispatcher {
public:
    struct Parts {
        platform::LedDriver& driver;
        platform::MessageLog& log;
        lighting::LightingOutput& lighting;
        EffectState& effects;
        MessageState& messages;
    };

    explicit Dispatcher(const Parts& parts);

    /// Carries out a message: its first character is the code, its second, if any, carries data. An unknown
    /// code does nothing. Not empty.
    void evaluateMessage(std::string_view message);

private:
    struct CodeAction;
    static const CodeAction kCodeActions[];

    void startCombat();
    void endCombat();
    void startDeath();
    void endDeath();
    void setCombatPulsePeriod(int milliseconds);
    void signalWhisper();
    void pulseCombatKeys();

    Parts m;
};

} // namespace glimra::events
