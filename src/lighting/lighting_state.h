#pragma once

#include "lighting/led_bitmap.h"

namespace glimra::lighting {

inline constexpr std::size_t kProfileCount = 9;

/// What the keyboard shows, as the application keeps it. Profile numbers run from 1 to 9.
struct LightingState {
    /// The profile in memory; 0 before one was loaded.
    int profileInMemory = 0;
    /// Its colour set and key map.
    ColorSet keyboardColorSet = [] {
        ColorSet cyan;
        cyan.fill({0.0, 1.0, 1.0});
        return cyan;
    }();
    KeyMap keyToColorMap = KeyMap(kKeyCodeCount, kColorASlot);
    /// Prepared bitmap of each profile, by number; entry 0 is no profile.
    std::array<LedBitmap, kProfileCount + 1> keyboardColorBitmap = [] {
        std::array<LedBitmap, kProfileCount + 1> bitmaps{};
        bitmaps.fill(blankBitmap());
        return bitmaps;
    }();
    /// Whether cooldowns are shown: entry 0 for the profile in memory, entry n for profile n as it was last
    /// loaded.
    std::array<bool, kProfileCount + 1> useSpellCooldowns{};
    DimmedKeys dimmedKeys;
    /// A colour for the whole keyboard goes to all devices, not only to those with a light for each key.
    bool singleColorFlag = false;
};

} // namespace glimra::lighting
