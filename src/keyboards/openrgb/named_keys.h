#pragma once

#include "lighting/keyboard_layout.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace glimra::keyboards::openrgb {

/// A key as OpenRGB's keyboards name it, and its place on them.
struct NamedKey {
    lighting::KeyCode code;
    /// The place in the matrix of a keyboard with US layout, with or without number pad.
    std::size_t row;
    std::size_t column;
    /// What may follow "Key: " in the name of the key's LED, the best name first, unused places empty. A name
    /// tells where the key is in the US layout, whatever is printed on its cap.
    std::array<std::string_view, 3> names;
};

inline constexpr std::array<NamedKey, 104> kNamedKeys{{
    {0x1, 0, 0, {"Escape"}},
    {0x3B, 0, 2, {"F1"}},
    {0x3C, 0, 3, {"F2"}},
    {0x3D, 0, 4, {"F3"}},
    {0x3E, 0, 5, {"F4"}},
    {0x3F, 0, 6, {"F5"}},
    {0x40, 0, 7, {"F6"}},
    {0x41, 0, 8, {"F7"}},
    {0x42, 0, 9, {"F8"}},
    {0x43, 0, 10, {"F9"}},
    {0x44, 0, 11, {"F10"}},
    {0x57, 0, 12, {"F11"}},
    {0x58, 0, 13, {"F12"}},
    {0x137, 0, 14, {"Print Screen"}},
    {0x46, 0, 15, {"Scroll Lock"}},
    {0x145, 0, 16, {"Pause/Break", "Pause"}},
    {0x29, 1, 0, {"`"}},
    {0x2, 1, 1, {"1"}},
    {0x3, 1, 2, {"2"}},
    {0x4, 1, 3, {"3"}},
    {0x5, 1, 4, {"4"}},
    {0x6, 1, 5, {"5"}},
    {0x7, 1, 6, {"6"}},
    {0x8, 1, 7, {"7"}},
    {0x9, 1, 8, {"8"}},
    {0xA, 1, 9, {"9"}},
    {0xB, 1, 10, {"0"}},
    {0xC, 1, 11, {"-"}},
    {0xD, 1, 12, {"="}},
    {0xE, 1, 13, {"Backspace"}},
    {0x152, 1, 14, {"Insert"}},
    {0x147, 1, 15, {"Home"}},
    {0x149, 1, 16, {"Page Up"}},
    {0x45, 1, 17, {"Num Lock"}},
    {0x135, 1, 18, {"Number Pad /"}},
    {0x37, 1, 19, {"Number Pad *"}},
    {0x4A, 1, 20, {"Number Pad -"}},
    {0xF, 2, 0, {"Tab"}},
    {0x10, 2, 1, {"Q"}},
    {0x11, 2, 2, {"W"}},
    {0x12, 2, 3, {"E"}},
    {0x13, 2, 4, {"R"}},
    {0x14, 2, 5, {"T"}},
    {0x15, 2, 6, {"Y"}},
    {0x16, 2, 7, {"U"}},
    {0x17, 2, 8, {"I"}},
    {0x18, 2, 9, {"O"}},
    {0x19, 2, 10, {"P"}},
    {0x1A, 2, 11, {"["}},
    {0x1B, 2, 12, {"]"}},
    {0x2B, 2, 13, {"\\ (ANSI)", "\\", "#"}},
    {0x153, 2, 14, {"Delete"}},
    {0x14F, 2, 15, {"End"}},
    {0x151, 2, 16, {"Page Down"}},
    {0x47, 2, 17, {"Number Pad 7"}},
    {0x48, 2, 18, {"Number Pad 8"}},
    {0x49, 2, 19, {"Number Pad 9"}},
    {0x4E, 2, 20, {"Number Pad +"}},
    {0x3A, 3, 0, {"Caps Lock"}},
    {0x1E, 3, 1, {"A"}},
    {0x1F, 3, 2, {"S"}},
    {0x20, 3, 3, {"D"}},
    {0x21, 3, 4, {"F"}},
    {0x22, 3, 5, {"G"}},
    {0x23, 3, 6, {"H"}},
    {0x24, 3, 7, {"J"}},
    {0x25, 3, 8, {"K"}},
    {0x26, 3, 9, {"L"}},
    {0x27, 3, 10, {";"}},
    {0x28, 3, 11, {"'"}},
    {0x1C, 3, 13, {"Enter", "Enter (ISO)"}},
    {0x4B, 3, 17, {"Number Pad 4"}},
    {0x4C, 3, 18, {"Number Pad 5"}},
    {0x4D, 3, 19, {"Number Pad 6"}},
    {0x2A, 4, 0, {"Left Shift"}},
    {0x2C, 4, 2, {"Z"}},
    {0x2D, 4, 3, {"X"}},
    {0x2E, 4, 4, {"C"}},
    {0x2F, 4, 5, {"V"}},
    {0x30, 4, 6, {"B"}},
    {0x31, 4, 7, {"N"}},
    {0x32, 4, 8, {"M"}},
    {0x33, 4, 9, {","}},
    {0x34, 4, 10, {"."}},
    {0x35, 4, 11, {"/"}},
    {0x36, 4, 13, {"Right Shift"}},
    {0x148, 4, 15, {"Up Arrow"}},
    {0x4F, 4, 17, {"Number Pad 1"}},
    {0x50, 4, 18, {"Number Pad 2"}},
    {0x51, 4, 19, {"Number Pad 3"}},
    {0x11C, 4, 20, {"Number Pad Enter"}},
    {0x1D, 5, 0, {"Left Control"}},
    {0x15B, 5, 1, {"Left Windows"}},
    {0x38, 5, 2, {"Left Alt"}},
    {0x39, 5, 6, {"Space"}},
    {0x138, 5, 10, {"Right Alt"}},
    {0x15C, 5, 11, {"Right Windows", "Right Fn"}},
    {0x15D, 5, 12, {"Menu"}},
    {0x11D, 5, 13, {"Right Control"}},
    {0x14B, 5, 14, {"Left Arrow"}},
    {0x150, 5, 15, {"Down Arrow"}},
    {0x14D, 5, 16, {"Right Arrow"}},
    {0x52, 5, 18, {"Number Pad 0"}},
    {0x53, 5, 19, {"Number Pad .", "Number Pad ,"}},
}};

} // namespace glimra::keyboards::openrgb
