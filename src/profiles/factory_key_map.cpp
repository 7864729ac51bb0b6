#include "profiles/factory_key_map.h"

#include <initializer_list>

namespace glimra::profiles {

namespace {

using lighting::KeyCode;

struct KeyGroup {
    int slot;
    std::span<const KeyCode> codes;
};

constexpr int kOrdinarySlot = 8;

/// 3, 6, 9 and =.
constexpr std::array<KeyCode, 4> kEveryThirdNumber{4, 7, 10, 13};
/// 2, 5, 8 and -.
constexpr std::array<KeyCode, 4> kEverySecondNumber{3, 6, 9, 12};
/// Esc, Tab, the modifiers, /, Enter, Backspace, Print Scrn, Home, Page Up, Page Down, End.
constexpr std::array<KeyCode, 16> kEdges{1,  15, 42, 29,  56,  312, 285, 54,
                                         53, 28, 14, 311, 327, 329, 337, 335};
/// W, A, S, D and the arrows.
constexpr std::array<KeyCode, 8> kMovement{17, 30, 31, 32, 328, 333, 336, 331};
/// Context Menu, Scroll Lock, Pause|Break.
constexpr std::array<KeyCode, 3> kUnused{349, 70, 325};
/// Punctuation, the keypad, the macro keys, logo and badge.
constexpr std::array<KeyCode, 35> kBackground{41,  58,  26,  27,  43,  39,  40,  51,  52,  69,  55,  74,
                                              71,  72,  73,  76,  75,  77,  78,  79,  80,  81,  284, 83,
                                              512, 513, 514, 515, 516, 517, 518, 519, 520, 521, 522};
/// Q, E, Z, X, Spacebar, Insert, Delete, NumPad /, NumPad 0.
constexpr std::array<KeyCode, 9> kActions{16, 18, 44, 45, 57, 338, 339, 309, 82};

const std::initializer_list<KeyGroup> kFactoryGroups{
    {4, kEveryThirdNumber}, {5, kEdges},   {6, kMovement},           {10, kUnused},
    {11, kBackground},      {3, kActions}, {12, kEverySecondNumber},
};

void assign(lighting::KeyMap& map, KeyCode code, int slot) {
    // The map may come from another profile, whose stored map had fewer entries than the keyboard has keys.
    if (code >= map.size())
        map.resize(code + 1, lighting::kColorASlot);
    map[code] = slot;
}

} // namespace

void applyFactoryKeyMap(lighting::KeyMap& map, const CanvasKeyCodes& canvasKeyCodes) {
    for (const KeyCode code : canvasKeyCodes)
        assign(map, code, kOrdinarySlot);
    for (const KeyGroup& group : kFactoryGroups)
        for (const KeyCode code : group.codes)
            assign(map, code, group.slot);
}

} // namespace glimra::profiles
