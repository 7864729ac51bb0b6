#pragma once

#include "screenlink/message_pump.h"
#include "screenlink/screen_reader.h"

namespace glimra::screenlink {

/// Ends what the game left burning: where it crashed or was closed in a fight, nobody would ever tell that
/// the fight is over. Main thread.
class StaleEffects {
public:
    /// How long the strip must be gone, and the game not in front.
    static constexpr platform::Duration kPatience = std::chrono::seconds(30);

    struct Parts {
        platform::RunLoop& runLoop;
        const ScreenReader& reader;
        const MessagePump& pump;
        events::Dispatcher& dispatcher;
        lighting::LightingOutput& lighting;
        const events::EffectState& effects;
        const events::OptionState& options;
    };

    explicit StaleEffects(const Parts& parts) : m(parts) {}

    /// To be called a few times a second, from the start on.
    void check();

private:
    void endEffects();

    Parts m;
    std::uint64_t m_validFrames = 0;
    /// The game gave its last sign of life; none before the first look.
    std::optional<platform::Time> m_lastSign;
    bool m_ended = false;
};

} // namespace glimra::screenlink
