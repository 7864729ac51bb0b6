#pragma once

#include "lighting/led_bitmap.h"

namespace glimra::profiles {

struct ColorSlot {
    /// Base name of the setting; the profile's number follows.
    std::string_view key;
    /// The colour of a profile that was never saved.
    lighting::Color factoryColor;
};

/// The thirteen colours of a profile, by colour slot.
inline constexpr std::array<ColorSlot, lighting::kColorSlotCount> kColorSlots{{
    {"colorIColor", {1.0, 0.5, 0.0}},
    {"OnCooldownNumberKeyColor", {0.3, 0.0, 0.0}},
    {"colorJColor", {1.0, 0.0, 0.5}},
    {"colorKColor", {0.0, 1.0, 0.5}},
    {"colorAColor", {0.0, 1.0, 1.0}},
    {"colorBColor", {1.0, 1.0, 0.0}},
    {"colorCColor", {0.0, 1.0, 0.0}},
    {"colorDColor", {1.0, 0.0, 0.0}},
    {"colorEColor", {0.0, 0.0, 0.5}},
    {"colorFColor", {1.0, 0.0, 1.0}},
    {"colorGColor", {0.0, 0.0, 0.0}},
    {"colorHColor", {0.4, 0.3, 0.4}},
    {"colorLColor", {0.0, 0.5, 1.0}},
}};

/// Slots of the wells and paint buttons with the tags 1 to 12 (A to L).
inline constexpr std::array<int, 12> kSlotOfTag{4, 5, 6, 7, 8, 9, 10, 11, 0, 2, 3, 12};

/// The slot of a tag, or `otherwise` for a tag outside 1 to 12.
constexpr int slotOfTag(int tag, int otherwise) {
    return tag >= 1 && tag <= 12 ? kSlotOfTag[static_cast<std::size_t>(tag - 1)] : otherwise;
}

} // namespace glimra::profiles
