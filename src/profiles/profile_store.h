#pragma once

#include "platform/system_services.h"
#include "platform/user_defaults.h"
#include "profiles/canvas_buffer.h"

#include <set>
#include <string>

namespace glimra::profiles {

/// Loads the nine profiles from the settings, and saves them there. Where a value is absent or cannot be
/// used, the factory's value is taken for it; one that cannot be used is reported in the system log, once.
/// Profile numbers run from 1 to 9. Main thread.
class ProfileStore {
public:
    struct Parts {
        platform::UserDefaults& defaults;
        platform::SystemLog& systemLog;
        lighting::LightingState& lighting;
        CanvasBuffer& canvas;
        const CanvasKeyCodes& canvasKeyCodes;
    };

    explicit ProfileStore(const Parts& parts);

    void loadColorSet(lighting::ColorSet& set, int profile);
    /// Reads the stored map, or writes the factory key map over what `map` holds. A map of fewer than 512
    /// entries is filled up to 529 with slot 4.
    void loadKeyMap(lighting::KeyMap& map, int profile);

    /// Makes a profile the one in memory and prepares its bitmap.
    void loadProfile(int profile);
    /// The same, with the keys on cooldown marked in the bitmap.
    void loadProfileWithCooldowns(int profile);

    void saveColorSet(std::span<const lighting::Color> colors, int profile);
    void saveKeyMap(const lighting::KeyMap& map, int profile);
    /// Stores what the canvas holds as a profile, and prepares its bitmap. The profile in memory stays.
    void saveProfile(int profile);

    /// Stores whether a profile shows cooldowns.
    void saveCooldownFlag(bool useCooldowns, int profile);

private:
    void loadIntoMemory(int profile);
    std::optional<lighting::KeyMap> storedKeyMap(const std::string& key);
    void report(const std::string& key, std::string_view complaint);

    Parts m_parts;
    std::set<std::string> m_reportedKeys;
};

} // namespace glimra::profiles
