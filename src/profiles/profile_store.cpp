#include "profiles/profile_store.h"

#include "platform/stored_values.h"
#include "profiles/color_archive.h"
#include "profiles/color_slots.h"
#include "profiles/factory_key_map.h"

#include <algorithm>

namespace glimra::profiles {

namespace {

constexpr std::string_view kKeyMapKey = "savedKeyToColorMap";
constexpr std::string_view kCooldownKey = "useActionBarCooldowns";
constexpr std::size_t kLongestStoredMap = 4096;
constexpr std::size_t kShortestWholeMap = 512;
constexpr std::size_t kFilledUpMap = 529;

std::string profileKey(std::string_view base, int profile) {
    return std::string(base) + std::to_string(profile);
}

bool isSlot(std::optional<std::int64_t> value) {
    return value && *value >= 0 && *value < static_cast<std::int64_t>(lighting::kColorSlotCount);
}

} // namespace

ProfileStore::ProfileStore(const Parts& parts) : m(parts) {
}

void ProfileStore::loadColorSet(lighting::ColorSet& set, int profile) {
    for (std::size_t slot = 0; slot < set.size(); ++slot) {
        set[slot] = kColorSlots[slot].factoryColor;
        const std::string key = profileKey(kColorSlots[slot].key, profile);
        const std::optional<platform::StoredValue> value = m.defaults.get(key);
        if (!value)
            continue;
        const auto* data = std::get_if<platform::Data>(&*value);
        if (const std::optional<lighting::Color> color = data ? unarchiveColor(*data) : std::nullopt)
            set[slot] = *color;
        else
            report(key, "holds no colour; the factory colour stands in for it.");
    }
}

void ProfileStore::loadKeyMap(lighting::KeyMap& map, int profile) {
    if (std::optional<lighting::KeyMap> stored = storedKeyMap(profileKey(kKeyMapKey, profile)))
        map = std::move(*stored);
    else
        applyFactoryKeyMap(map, m.canvasKeyCodes);
    if (map.size() < kShortestWholeMap)
        map.resize(kFilledUpMap, lighting::kColorASlot);
}

std::optional<lighting::KeyMap> ProfileStore::storedKeyMap(const std::string& key) {
    const std::optional<platform::StoredValue> value = m.defaults.get(key);
    if (!value)
        return std::nullopt;
    const auto* numbers = std::get_if<platform::NumberArray>(&*value);
    if (!numbers || numbers->size() > kLongestStoredMap) {
        report(key, "holds no list of colour slots; the factory key map stands in for it.");
        return std::nullopt;
    }
    lighting::KeyMap map;
    map.reserve(numbers->size());
    for (const platform::Number& number : *numbers) {
        const std::optional<std::int64_t> slot = platform::toInteger(number);
        if (!isSlot(slot))
            report(key, "has keys without a colour slot from 0 to 12; they take colour A.");
        map.push_back(isSlot(slot) ? static_cast<int>(*slot) : lighting::kColorASlot);
    }
    return map;
}

void ProfileStore::loadIntoMemory(int profile) {
    m.lighting.profileInMemory = profile;
    loadColorSet(m.lighting.keyboardColorSet, profile);
    loadKeyMap(m.lighting.keyToColorMap, profile);
    const std::string key = profileKey(kCooldownKey, profile);
    const std::optional<bool> useCooldowns = platform::storedBool(m.defaults, key);
    if (!useCooldowns && m.defaults.get(key))
        report(key, "is neither yes nor no; no stands in for it.");
    m.lighting.useSpellCooldowns[0] = useCooldowns.value_or(false);
    m.canvas.usingActionbarCooldowns = m.lighting.useSpellCooldowns[0];
    m.lighting.useSpellCooldowns.at(static_cast<std::size_t>(profile)) = m.lighting.useSpellCooldowns[0];
}

void ProfileStore::loadProfile(int profile) {
    loadIntoMemory(profile);
    m.lighting.keyboardColorBitmap.at(static_cast<std::size_t>(profile)) =
        lighting::buildColorBitmap(m.lighting.keyboardColorSet, m.lighting.keyToColorMap);
}

void ProfileStore::loadProfileWithCooldowns(int profile) {
    loadIntoMemory(profile);
    m.lighting.keyboardColorBitmap.at(static_cast<std::size_t>(profile)) =
        lighting::buildColorBitmapWithCooldowns(m.lighting.keyboardColorSet, m.lighting.keyToColorMap,
                                                m.lighting.useSpellCooldowns[0], m.lighting.dimmedKeys);
}

void ProfileStore::saveColorSet(std::span<const lighting::Color> colors, int profile) {
    for (std::size_t slot = 0; slot < std::min(colors.size(), kColorSlots.size()); ++slot)
        m.defaults.set(profileKey(kColorSlots[slot].key, profile), archiveColor(colors[slot]));
}

void ProfileStore::saveKeyMap(const lighting::KeyMap& map, int profile) {
    m.defaults.set(profileKey(kKeyMapKey, profile), platform::NumberArray(map.begin(), map.end()));
}

void ProfileStore::saveProfile(int profile) {
    m.canvas.fillIfEmpty(m.lighting);
    saveColorSet(m.canvas.keyColorSet, profile);
    saveKeyMap(m.canvas.keysToColors, profile);
    saveCooldownFlag(m.lighting.useSpellCooldowns[0], profile);
    m.canvas.usingActionbarCooldowns = m.lighting.useSpellCooldowns[0];
    m.lighting.keyboardColorBitmap.at(static_cast<std::size_t>(profile)) =
        lighting::buildColorBitmap(m.canvas.keyColorSet, m.canvas.keysToColors);
}

void ProfileStore::saveCooldownFlag(bool useCooldowns, int profile) {
    m.defaults.set(profileKey(kCooldownKey, profile), useCooldowns);
}

void ProfileStore::report(const std::string& key, std::string_view complaint) {
    if (m_reportedKeys.insert(key).second)
        platform::reportSetting(m.systemLog, key, complaint);
}

} // namespace glimra::profiles
