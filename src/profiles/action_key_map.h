#pragma once

#include "lighting/key_table.h"
#include "platform/system_services.h"
#include "platform/user_defaults.h"

#include <span>

namespace glimra::profiles {

inline constexpr std::size_t kSlotsPerBar = 12;
/// Slots that are stored and edited: twelve of bar 1, six of bar 5, twelve of bar 6.
inline constexpr std::size_t kActionSlotCount = 30;

using BarKeys = std::array<lighting::KeyCode, kSlotsPerBar>;

/// Which key each action-bar slot is bound to; 0 is no key. Slot n is at index n - 1.
struct ActionKeyMap {
    BarKeys actionBar1Keys{};
    BarKeys actionBar5Keys{};
    BarKeys actionBar6Keys{};

    friend bool operator==(const ActionKeyMap&, const ActionKeyMap&) = default;
};

/// One slot that is stored and edited.
struct ActionSlot {
    /// The setting is named "key" and then this number; so are the menu and its action.
    int number;
    BarKeys ActionKeyMap::*bar;
    /// Index in the bar.
    std::size_t index;
    lighting::KeyCode factoryKey;
};

/// All thirty, bar 1 first, in the order of their menus.
std::span<const ActionSlot> actionSlots();

lighting::KeyCode& keyOfSlot(ActionKeyMap& map, const ActionSlot& slot);
lighting::KeyCode keyOfSlot(const ActionKeyMap& map, const ActionSlot& slot);

/// Reads the map. A slot has its factory key when its stored value is absent or names no key; a value that
/// names no key is reported in the system log.
ActionKeyMap loadActionKeyMap(const platform::UserDefaults& defaults, platform::SystemLog& systemLog);

/// Stores all thirty slots.
void saveActionKeyMap(const ActionKeyMap& map, platform::UserDefaults& defaults);

} // namespace glimra::profiles
