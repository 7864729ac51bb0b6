#include "profiles/action_key_map.h"

#include "platform/stored_values.h"

#include <limits>

namespace glimra::profiles {

namespace {

constexpr std::size_t kSlotsOfBar5 = 6;

/// The number row.
constexpr BarKeys kFactoryBar1{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
/// F1 to F10, with a gap after every fourth.
constexpr BarKeys kFactoryBar6{59, 60, 61, 62, 0, 63, 64, 65, 66, 0, 67, 68};

constexpr std::array<ActionSlot, kActionSlotCount> kActionSlots = [] {
    std::array<ActionSlot, kActionSlotCount> slots{};
    std::size_t next = 0;
    const auto addBar = [&](int bar, BarKeys ActionKeyMap::*keys, std::size_t count, const BarKeys& factory) {
        for (std::size_t i = 0; i < count; ++i)
            slots[next++] = {bar * 100 + static_cast<int>(i) + 1, keys, i, factory[i]};
    };
    addBar(1, &ActionKeyMap::actionBar1Keys, kSlotsPerBar, kFactoryBar1);
    addBar(5, &ActionKeyMap::actionBar5Keys, kSlotsOfBar5, BarKeys{});
    addBar(6, &ActionKeyMap::actionBar6Keys, kSlotsPerBar, kFactoryBar6);
    return slots;
}();

std::string slotKey(const ActionSlot& slot) {
    return "key" + std::to_string(slot.number);
}

std::optional<lighting::KeyCode> toKeyCode(std::optional<std::int64_t> stored) {
    if (!stored || *stored < 0 || *stored > std::numeric_limits<lighting::KeyCode>::max())
        return std::nullopt;
    const auto code = static_cast<lighting::KeyCode>(*stored);
    return lighting::displayNameOfKey(code) ? std::optional(code) : std::nullopt;
}

} // namespace

std::span<const ActionSlot> actionSlots() {
    return kActionSlots;
}

lighting::KeyCode& keyOfSlot(ActionKeyMap& map, const ActionSlot& slot) {
    return (map.*slot.bar)[slot.index];
}

lighting::KeyCode keyOfSlot(const ActionKeyMap& map, const ActionSlot& slot) {
    return (map.*slot.bar)[slot.index];
}

ActionKeyMap loadActionKeyMap(const platform::UserDefaults& defaults, platform::SystemLog& systemLog) {
    const platform::SettingsReader reader{defaults, systemLog};
    ActionKeyMap map;
    for (const ActionSlot& slot : kActionSlots) {
        const std::string key = slotKey(slot);
        keyOfSlot(map, slot) = reader
                                   .checked(toKeyCode(platform::storedInteger(defaults, key)), key,
                                            "names no key; the factory key stands in for it.")
                                   .value_or(slot.factoryKey);
    }
    return map;
}

void saveActionKeyMap(const ActionKeyMap& map, platform::UserDefaults& defaults) {
    for (const ActionSlot& slot : kActionSlots)
        defaults.set(slotKey(slot), std::int64_t{keyOfSlot(map, slot)});
}

} // namespace glimra::profiles
