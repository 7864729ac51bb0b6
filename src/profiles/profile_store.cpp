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

ProfileStore::ProfileStore(const Parts& parts) : m_parts(parts) {
}

void ProfileStore::loadColorSet(lighting::ColorSet& set, int profile) {
    for (std::size_t slot = 0; slot < set.size(); ++slot) {
        set[slot] = kColorSlots[slot].factoryColor;
        const std::string key = profileKey(kColorSlots[slot].key, profile);
        const std::optional<platform::StoredValue> value = m_parts.defaults.get(key);
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
        applyFactoryKeyMap(map, m_parts.canvasKeyCodes);
    if (map.size() < kShortestWholeMap)
        map.resize(kFilledUpMap, lighting::kColorASlot);
}

std::optional<lighting::KeyMap> ProfileStore::storedKeyMap(const std::string& key) {
    const std::optional<platform::StoredValue> value = m_parts.defaults.get(key);
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
    m_parts.lighting.profileInMemory = profile;
    loadColorSet(m_parts.lighting.keyboardColorSet, profile);
    loadKeyMap(m_parts.lighting.keyToColorMap, profile);
    const std::string key = profileKey(kCooldownKey, profile);
    const std::optional<bool> useCooldowns = platform::storedBool(m_parts.defaults, key);
    if (!useCooldowns && m_parts.defaults.get(key))
        report(key, "is neither yes nor no; no stands in for it.");
    m_parts.lighting.useSpellCooldowns[0] = useCooldowns.value_or(false);
    m_parts.canvas.usingActionbarCooldowns = m_parts.lighting.useSpellCooldowns[0];
    m_parts.lighting.useSpellCooldowns.at(static_cast<std::size_t>(profile)) =
        m_parts.lighting.useSpellCooldowns[0];
}

void ProfileStore::loadProfile(int profile) {
    loadIntoMemory(profile);
    m_parts.lighting.keyboardColorBitmap.at(static_cast<std::size_t>(profile)) =
        lighting::buildColorBitmap(m_parts.lighting.keyboardColorSet, m_parts.lighting.keyToColorMap);
}

void ProfileStore::loadProfileWithCooldowns(int profile) {
    loadIntoMemory(profile);
    m_parts.lighting.keyboardColorBitmap.at(static_cast<std::size_t>(profile)) =
        lighting::buildColorBitmapWithCooldowns(
            m_parts.lighting.keyboardColorSet, m_parts.lighting.keyToColorMap,
            m_parts.lighting.useSpellCooldowns[0], m_parts.lighting.dimmedKeys);
}

void ProfileStore::saveColorSet(std::span<const lighting::Color> colors, int profile) {
    for (std::size_t slot = 0; slot < std::min(colors.size(), kColorSlots.size()); ++slot)
        m_parts.defaults.set(profileKey(kColorSlots[slot].key, profile), archiveColor(colors[slot]));
}

void ProfileStore::saveKeyMap(const lighting::KeyMap& map, int profile) {
    m_parts.defaults.set(profileKey(kKeyMapKey, profile), platform::NumberArray(map.begin(), map.end()));
}

void ProfileStore::saveProfile(int profile) {
    m_parts.canvas.fillIfEmpty(m_parts.lighting);
    saveColorSet(m_parts.canvas.keyColorSet, profile);
    saveKeyMap(m_parts.canvas.keysToColors, profile);
    saveCooldownFlag(m_parts.lighting.useSpellCooldowns[0], profile);
    m_parts.canvas.usingActionbarCooldowns = m_parts.lighting.useSpellCooldowns[0];
    m_parts.lighting.keyboardColorBitmap.at(static_cast<std::size_t>(profile)) =
        lighting::buildColorBitmap(m_parts.canvas.keyColorSet, m_parts.canvas.keysToColors);
}

void ProfileStore::saveCooldownFlag(bool useCooldowns, int profile) {
    m_parts.defaults.set(profileKey(kCooldownKey, profile), useCooldowns);
}

void ProfileStore::report(const std::string& key, std::string_view complaint) {
    if (m_reportedKeys.insert(key).second)
        platform::reportSetting(m_parts.systemLog, key, complaint);
}

} // namespace glimra::profiles
