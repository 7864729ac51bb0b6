#pragma once

#include "lighting/color_conversion.h"
#include "lighting/key_table.h"

#include <array>
#include <set>
#include <span>
#include <vector>

namespace glimra::lighting {

/// The whole keyboard's colours as `LogiLedSetLightingFromBitmap` takes them.
using LedBitmap = std::array<std::uint8_t, platform::kLedBitmapBytes>;

inline constexpr std::size_t kColorSlotCount = 13;
inline constexpr int kCooldownSlot = 1;
/// Slot of colour A, the colour of single-colour mode.
inline constexpr int kColorASlot = 4;

/// Thirteen colours, by colour slot.
using ColorSet = std::array<Color, kColorSlotCount>;

/// Colour slot (0 to 12) of each key, by key code; at least `kKeyCodeCount` entries once it is loaded.
using KeyMap = std::vector<int>;

/// Keys shown as on cooldown.
using DimmedKeys = std::set<KeyCode>;

/// A bitmap with every byte 0xFF, which is white. In a profile's bitmap, cells without a key stay so.
constexpr LedBitmap blankBitmap() {
    LedBitmap bitmap{};
    bitmap.fill(0xFF);
    return bitmap;
}

/// A colour set to read from. It may have fewer than thirteen colours as long as no profile was loaded.
using ColorSetView = std::span<const Color>;

/// The colour of a slot; black for a slot beyond the set.
Color slotColor(ColorSetView colorSet, int slot);
/// A key's colour in a key map; black for a code beyond the map.
Color mappedColor(ColorSetView colorSet, const KeyMap& keyMap, KeyCode code);

LedBitmap buildColorBitmap(ColorSetView colorSet, const KeyMap& keyMap);

/// The same, with the keys in `dimmedKeys` in the cooldown colour when `useCooldowns` is set.
LedBitmap buildColorBitmapWithCooldowns(ColorSetView colorSet, const KeyMap& keyMap, bool useCooldowns,
                                        const DimmedKeys& dimmedKeys);

/// Writes blue, green and red of the cell at `offset`; alpha stays.
void paintCell(LedBitmap& bitmap, std::size_t offset, Rgb color);

} // namespace glimra::lighting
