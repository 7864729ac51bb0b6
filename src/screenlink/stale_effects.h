#pragma once

#include "platform/user_defaults.h"
#include "screenlink/message_pump.h"
#include "screenlink/screen_reader.h"

namespace glimra::screenlink {

/// Ends what the game left burning: where it crashed or was closed in a fight, nobody would ever tell that
/// the fight is over. It ends effects and nothing else: what waits in the queue and the profile stay, and the
/// keyboard shows again what the effects lay over. Main thread.
class StaleEffects {
public:
    /// How long the strip must be gone, and the game not in front.
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

    explicit StaleEffects(const Parts& parts) : m(parts) {}

    /// Takes the saved choice.
    void loadEndStaleEffects();
    /// Whether long effects end by themselves when the game is gone; remembered.
    void setEndStaleEffects(bool endThem);

    /// To be called a few times a second, from the start on.
    void check();

private:
    void endEffects();
    void showWhatLiesUnder();

    Parts m;
    std::uint64_t m_validFrames = 0;
    /// The game gave its last sign of life; none before the first look.
    std::optional<platform::Time> m_lastSign;
    /// What the effects held back may begin others, which end as well.
    bool m_isSaid = false;
};

} // namespace glimra::screenlink
