#pragma once

#include "platform/user_defaults.h"
#include "screenlink/message_pump.h"
#include "screenlink/screen_reader.h"

namespace glimra::screenlink {

/// Ends long effects when the game is gone: if it crashed or was closed in a fight, no message would ever say
/// that the fight is over. The queue and the profile stay as they are, and the keyboard shows again what the
/// effects had covered. Main thread.
class StaleEffects {
public:
    /// Effects end when for so long no frame was read and the game was not in front.
    static constexpr platform::Duration kPatience = std::chrono::seconds(30);

    struct Parts {
        platform::RunLoop& runLoop;
        platform::UserDefaults& defaults;
        platform::SystemLog& systemLog;
        const ScreenReader& reader;
        const MessagePump& pump;
        platform::LedDriver& driver;
        platform::MessageLog& log;
        platform::CanvasView& canvasView;
        events::Effects& animations;
        lighting::LightingOutput& lighting;
        const lighting::LightingState& lightingState;
        const profiles::ProfileState& profile;
        events::EffectState& effects;
        events::OptionState& options;
    };

    explicit StaleEffects(const Parts& parts) : m_parts(parts) {}

    /// Takes the saved choice.
    void loadEndStaleEffects();
    /// Whether long effects end by themselves when the game is gone; remembered.
    void setEndStaleEffects(bool endThem);

    /// To be called a few times a second, from the start on.
    void check();

private:
    void endEffects();
    void showWhatLiesUnder();

    Parts m_parts;
    std::uint64_t m_validFrames = 0;
    /// When a frame was last read or the game was last in front; none before the first check.
    std::optional<platform::Time> m_lastSign;
    /// The log says so already. Messages that had waited for the effects may begin other ones; these end as
    /// well, but it is said only once.
    bool m_isSaid = false;
};

} // namespace glimra::screenlink
