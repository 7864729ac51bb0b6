#pragma once

#include "lighting/lighting_state.h"

namespace glimra::profiles {

/// The codes of the keys on the keyboard canvas, ascending; empty until the canvas exists.
using CanvasKeyCodes = std::vector<lighting::KeyCode>;

/// The profile as it is being edited. Painting changes only this; saving takes it from here.
struct CanvasBuffer {
    /// The profile that the buffer was filled with; 0 before that. The keyboard may show another one by now.
    int profile = 0;
    /// Colour slot that a click applies.
    int paintColor = lighting::kColorASlot;
    /// A whole colour set and key map once the editor was opened; until then one black colour and one key.
    std::vector<lighting::Color> keyColorSet{lighting::Color{}};
    lighting::KeyMap keysToColors{lighting::kColorASlot};
    bool usingActionbarCooldowns = false;
    /// Keys that the cooldown preview shows.
    lighting::DimmedKeys dimmedKeys;

    void fillFrom(const lighting::LightingState& lighting) {
        profile = lighting.profileInMemory;
        keyColorSet.assign(lighting.keyboardColorSet.begin(), lighting.keyboardColorSet.end());
        keysToColors = lighting.keyToColorMap;
    }
    /// Fills the buffer if the editor was never opened. Must be called before a profile is saved or shown
    /// from it.
    void fillIfEmpty(const lighting::LightingState& lighting) {
        if (keyColorSet.size() < lighting::kColorSlotCount)
            fillFrom(lighting);
    }
};

} // namespace glimra::profiles
