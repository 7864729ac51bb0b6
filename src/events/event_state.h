#pragma once

#include "platform/locked.h"

#include <string>

namespace glimra::events {

/// Which long effects the keyboard shows.
struct EffectState {
    bool combatAnimationPlaying = false;
    bool singleColorModeRedFlash = false;
    bool deadAnimationPlaying = false;
    bool shadowAnimationPlaying = false;
    /// The whisper signal on the Enter key.
    bool whisperLightActive = false;
    /// Keys outside the LED bitmap (G keys, logo, badge) have gone on pulsing since a reset.
    bool leftPulsing = false;
    /// Period of the combat pulse.
    int combatPulseMs = 400;

    /// Whether an effect shows that would go on until the game sends a message.
    bool isAnyPlaying() const {
        return combatAnimationPlaying || deadAnimationPlaying || shadowAnimationPlaying ||
               whisperLightActive || leftPulsing;
    }
};

/// What the user has chosen.
struct OptionState {
    bool useSingleColorMode = false;
    /// Show profile 2 while the chat box is open or the game is not in front.
    bool autoToggleProfile2 = false;
    /// Pulse in another colour while the chat box is open in a fight.
    bool combatChatWarning = false;
    /// End long effects when the game is gone.
    bool endStaleEffects = false;
};

struct CooldownState {
    /// While above 0, keys that become ready do not blink.
    int supressCooldownBlinkCounter = 0;
    /// Seconds a key blinks when its slot becomes ready; at least 0.01.
    double blinkTime = 1.0;
    /// The copy that the blink reads; set together with `blinkTime`.
    double blinkPeriod = 1.0;
};

/// Messages on their way from the reader to the dispatcher.
struct MessageState {
    /// Tokens not yet taken, front first. The reader adds, the main thread takes.
    platform::Locked<std::string> messageQueue;
    /// The message taken and not yet dispatched; empty means that the buffer is free. Main thread.
    std::string currentMessage;
    /// Ticks until the lighting is shown anew; 0 when the game is not in front or a refresh is due. Main
    /// thread.
    int WoWisInTheForeground = 0;
    /// The next calibrate command only asks for confirmation. Main thread.
    bool confirmCalibrate = true;
};

} // namespace glimra::events
