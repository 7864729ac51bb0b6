#pragma once

#include "events/event_state.h"
#include "lighting/lighting_output.h"
#include "platform/controls.h"
#include "platform/run_loop.h"
#include "platform/user_defaults.h"
#include "profiles/action_key_map.h"
#include "profiles/profile_state.h"
#include "profiles/profile_store.h"

namespace glimra::events {

/// Shows which abilities are on cooldown. Their keys are marked in the prepared bitmap of every profile that
/// shows cooldowns; if the profile in memory does, and no death or shadow shows, the keyboard changes at
/// once. Main thread.
class CooldownDisplay {
public:
    struct Parts {
        platform::RunLoop& runLoop;
        platform::LedDriver& driver;
        platform::UserDefaults& defaults;
        platform::SystemLog& systemLog;
        lighting::LightingOutput& lighting;
        lighting::LightingState& lightingState;
        profiles::ProfileStore& store;
        profiles::CanvasBuffer& canvas;
        platform::CanvasView& canvasView;
        platform::TextField& blinkTimeTextbox;
        const profiles::ActionKeyMap& keys;
        const profiles::ProfileState& profile;
        const EffectState& effects;
        const OptionState& options;
        CooldownState& cooldowns;
    };

    explicit CooldownDisplay(const Parts& parts);

    /// Takes a report of six slots: `code` names them, and the first character of `data` has a bit for each
    /// that is on cooldown. A report without data, or with an unknown code, is dropped.
    void updateCooldowns(char code, std::string_view data);

    /// Makes the active profile show cooldowns, or stops it from doing so.
    void showCooldowns(bool on);

    /// Marks the bound keys on the canvas for a second.
    void revealCooldownColors();

    /// Reads the blink time from the settings and shows it.
    void loadBlinkTime();
    /// Takes the blink time from the text field, and stores it.
    void blinkTimeChanged();

private:
    void unrevealCooldownColors();
    /// Whether a change of the key shows on the keyboard at once.
    bool isLive(lighting::KeyCode key) const;
    void markOnCooldown(lighting::KeyCode key);
    [[nodiscard]] bool markReady(lighting::KeyCode key);
    void paint(lighting::KeyCode key, const lighting::Color& color, std::size_t profile);
    [[nodiscard]] bool blink(lighting::KeyCode key);
    void setBlinkTime(double seconds);

    Parts m_parts;
};

} // namespace glimra::events
