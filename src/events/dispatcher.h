#pragma once

#include "events/cooldown_display.h"
#include "events/effects.h"
#include "events/event_state.h"
#include "lighting/lighting_output.h"
#include "platform/message_log.h"
#include "profiles/profile_state.h"
#include "profiles/profile_store.h"

#include <string_view>

namespace glimra::events {

enum class ResetNotice { Logged, Silent };

/// Turns one message into one lighting action. It keeps no state of its own. Main thread.
class Dispatcher {
public:
    struct Parts {
        platform::LedDriver& driver;
        platform::MessageLog& log;
        lighting::LightingOutput& lighting;
        const lighting::LightingState& lightingState;
        profiles::ProfileStore& store;
        profiles::ProfileState& profile;
        Effects& animations;
        CooldownDisplay& cooldowns;
        const OptionState& options;
        EffectState& effects;
        MessageState& messages;
    };

    explicit Dispatcher(const Parts& parts);

    /// Carries out a message, which must not be empty. Its first character is the code, the rest, if any, is
    /// data. An unknown code does nothing. If the message plays an animation, this returns when that is over
    /// or the application has terminated.
    void evaluateMessage(std::string_view message);

    /// Drops what waits, ends the effects on the keys of the LED bitmap and goes back to profile 1. Outside
    /// single-colour mode the other keys go on pulsing. The flag of the whisper signal, the combat pulse's
    /// speed and the cooldowns stay.
    void resetLights(ResetNotice notice);

    /// Shows a profile as it is stored, with its cooldowns.
    void switchToProfile(int profile);

private:
    struct Message;
    struct CodeAction;
    /// What each message does that is more than an animation.
    static std::span<const CodeAction> codeActions();

    void startCombat();
    void endCombat();
    void startDeath();
    void endDeath();
    void startShadow(const HsbColor& color);
    void endShadow();
    void setCombatPulsePeriod(int milliseconds);
    void toggleProfile();
    void chooseProfile(int profile);
    void openChat();
    void closeChat();
    void signalWhisper();

    /// False when the application terminated meanwhile.
    bool play(const Animation& animation);
    /// Plays the animation and, if it came to its end, notes its outcome.
    void show(const Animation& animation);
    void pulseCombatKeys();
    bool chatSwitchesProfile() const;
    bool chatRecoloursCombat() const;

    Parts m_parts;
};

} // namespace glimra::events
