#pragma once

#include "platform/led_driver.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace glimra::lighting {

using platform::KeyName;

/// Identity of a key throughout the program: for ordinary keys the LED functions' own key name, for the
/// eleven keys outside the LED bitmap 512 to 522. 0 is no key.
using KeyCode = std::uint32_t;

inline constexpr KeyCode kNoKey = 0;
inline constexpr KeyCode kEnterKey = 0x1C;
inline constexpr KeyCode kEscKey = 0x01;
/// The first code that has no cell in the LED bitmap.
inline constexpr KeyCode kFirstIndividualCode = 512;
/// Codes lie below this; a key map has an entry for each.
inline constexpr std::size_t kKeyCodeCount = 528;

inline constexpr std::size_t kBitmapColumns = 21;
inline constexpr std::size_t kBitmapRows = 6;
inline constexpr std::size_t kBitmapBytesPerKey = 4;

struct KeyEntry {
    KeyCode code = kNoKey;
    /// UTF-8, unique. Leading blanks make the menus sort as they should.
    std::string_view displayName;
    /// Cell in the LED bitmap; -1 where the key has none.
    int row = -1;
    int column = -1;

    constexpr bool hasCell() const { return row >= 0; }
};

/// Every key in the keyboard's row order, "no key" first. All other key tables come from this one.
inline constexpr std::array<KeyEntry, 116> kKeyTable{{
    {0x0, "  No Key"},
    {0x1, "Esc", 0, 0},
    {0x3B, "F 1", 0, 1},
    {0x3C, "F 2", 0, 2},
    {0x3D, "F 3", 0, 3},
    {0x3E, "F 4", 0, 4},
    {0x3F, "F 5", 0, 5},
    {0x40, "F 6", 0, 6},
    {0x41, "F 7", 0, 7},
    {0x42, "F 8", 0, 8},
    {0x43, "F 9", 0, 9},
    {0x44, "F10", 0, 10},
    {0x57, "F11", 0, 11},
    {0x58, "F12", 0, 12},
    {0x137, "Print Scrn", 0, 13},
    {0x46, "Scroll Lock", 0, 14},
    {0x145, "Pause|Break", 0, 15},
    {0x29, "~", 1, 0},
    {0x2, " 1", 1, 1},
    {0x3, " 2", 1, 2},
    {0x4, " 3", 1, 3},
    {0x5, " 4", 1, 4},
    {0x6, " 5", 1, 5},
    {0x7, " 6", 1, 6},
    {0x8, " 7", 1, 7},
    {0x9, " 8", 1, 8},
    {0xA, " 9", 1, 9},
    {0xB, " 0", 1, 10},
    {0xC, "-", 1, 11},
    {0xD, "=", 1, 12},
    {0xE, "Backspace", 1, 13},
    {0x152, "Insert", 1, 14},
    {0x147, "Home", 1, 15},
    {0x149, "Page Up", 1, 16},
    {0x45, "Num Lock", 1, 17},
    {0x135, "NumPad /", 1, 18},
    {0x37, "NumPad *", 1, 19},
    {0x4A, "NumPad -", 1, 20},
    {0xF, "Tab", 2, 0},
    {0x10, " Q", 2, 1},
    {0x11, " W", 2, 2},
    {0x12, " E", 2, 3},
    {0x13, " R", 2, 4},
    {0x14, " T", 2, 5},
    {0x15, " Y", 2, 6},
    {0x16, " U", 2, 7},
    {0x17, " I", 2, 8},
    {0x18, " O", 2, 9},
    {0x19, " P", 2, 10},
    {0x1A, "[", 2, 11},
    {0x1B, "]", 2, 12},
    {0x2B, "\\", 2, 13},
    {0x153, "Delete", 2, 14},
    {0x14F, "End", 2, 15},
    {0x151, "Page Down", 2, 16},
    {0x47, "NumPad 7", 2, 17},
    {0x48, "NumPad 8", 2, 18},
    {0x49, "NumPad 9", 2, 19},
    {0x4E, "NumPad +", 2, 20},
    {0x3A, "Caps Lock \u00A9", 3, 0},
    {0x1E, " A", 3, 1},
    {0x1F, " S", 3, 2},
    {0x20, " D", 3, 3},
    {0x21, " F", 3, 4},
    {0x22, " G", 3, 5},
    {0x23, " H", 3, 6},
    {0x24, " J", 3, 7},
    {0x25, " K", 3, 8},
    {0x26, " L", 3, 9},
    {0x27, ";", 3, 10},
    {0x28, "'", 3, 11},
    {0x1C, "Enter \u00A9", 3, 13},
    {0x4B, "NumPad 4", 3, 17},
    {0x4C, "NumPad 5", 3, 18},
    {0x4D, "NumPad 6", 3, 19},
    {0x2A, "Left Shift \u00A9", 4, 0},
    {0x2C, " Z", 4, 2},
    {0x2D, " X", 4, 3},
    {0x2E, " C", 4, 4},
    {0x2F, " V", 4, 5},
    {0x30, " B", 4, 6},
    {0x31, " N", 4, 7},
    {0x32, " M", 4, 8},
    {0x33, ",", 4, 9},
    {0x34, ".", 4, 10},
    {0x35, "/", 4, 11},
    {0x36, "Right Shift \u00A9", 4, 13},
    {0x148, "Arrow Up \u00A9", 4, 15},
    {0x4F, "NumPad 1", 4, 17},
    {0x50, "NumPad 2", 4, 18},
    {0x51, "NumPad 3", 4, 19},
    {0x11C, "NumPad Enter", 4, 20},
    {0x1D, "Left Control \u00A9", 5, 0},
    {0x15B, "Left Windows \u00A9", 5, 1},
    {0x38, "Left Alt \u00A9", 5, 2},
    {0x39, "Spacebar \u00A9", 5, 5},
    {0x138, "Right Alt \u00A9", 5, 11},
    {0x15C, "Right Windows \u00A9", 5, 12},
    {0x15D, "Context Menu \u00A9", 5, 13},
    {0x11D, "Right Control \u00A9", 5, 14},
    {0x14B, "Arrow Left \u00A9", 5, 15},
    {0x150, "Arrow Down \u00A9", 5, 16},
    {0x14D, "Arrow Right \u00A9", 5, 17},
    {0x52, "NumPad 0", 5, 18},
    {0x53, "NumPad .", 5, 19},
    {0x200, "G1"},
    {0x201, "G2"},
    {0x202, "G3"},
    {0x203, "G4"},
    {0x204, "G5"},
    {0x205, "G6"},
    {0x206, "G7"},
    {0x207, "G8"},
    {0x208, "G9"},
    {0x209, "G Logo \u00A9"},
    {0x20A, "Glimra Badge \u00A9"},
}};

/// A key outside the LED bitmap: its own code, and the name that the LED functions know it by.
struct IndividuallyLitKey {
    KeyCode code;
    KeyName keyName;
};

/// G1 to G9, logo and badge, in the order in which a profile lights them after its bitmap.
inline constexpr std::array<IndividuallyLitKey, 11> individuallyLitKeys{{
    {512, 0xFFF1},
    {513, 0xFFF2},
    {514, 0xFFF3},
    {515, 0xFFF4},
    {516, 0xFFF5},
    {517, 0xFFF6},
    {518, 0xFFF7},
    {519, 0xFFF8},
    {520, 0xFFF9},
    {521, 0xFFFF1},
    {522, 0xFFFF2},
}};

struct KeyBitmapOffset {
    KeyCode code = kNoKey;
    /// Of the first byte (blue) of the key's cell.
    std::size_t offset = 0;
};

/// Where the 104 keys of the LED bitmap have their cells.
inline constexpr std::array<KeyBitmapOffset, 104> keyBitmapOffsets = [] {
    std::array<KeyBitmapOffset, 104> offsets{};
    std::size_t next = 0;
    for (const KeyEntry& key : kKeyTable)
        if (key.hasCell())
            offsets[next++] = {key.code, (static_cast<std::size_t>(key.row) * kBitmapColumns +
                                          static_cast<std::size_t>(key.column)) *
                                             kBitmapBytesPerKey};
    return offsets;
}();

/// Byte offset of a key's cell; none for a key outside the bitmap.
std::optional<std::size_t> keyBitmapOffset(KeyCode code);

/// The name that the LED functions know a key by.
KeyName driverKeyName(KeyCode code);

/// Display name of a key; none for a code that no key has.
std::optional<std::string_view> displayNameOfKey(KeyCode code);

/// The key whose display name is exactly `name`.
std::optional<KeyCode> keyOfDisplayName(std::string_view name);

/// All display names in plain string order, as the menus list them.
std::vector<std::string> sortedKeyDisplayNames();

} // namespace glimra::lighting
