#include "lighting/key_table.h"

#include <algorithm>

namespace glimra::lighting {

namespace {

constexpr std::int16_t kNoOffset = -1;

constexpr std::array<std::int16_t, kKeyCodeCount> kOffsetOfCode = [] {
    std::array<std::int16_t, kKeyCodeCount> offsets{};
    offsets.fill(kNoOffset);
    for (const KeyBitmapOffset& key : keyBitmapOffsets)
        offsets[key.code] = static_cast<std::int16_t>(key.offset);
    return offsets;
}();

} // namespace

std::optional<std::size_t> keyBitmapOffset(KeyCode code) {
    if (code >= kOffsetOfCode.size() || kOffsetOfCode[code] == kNoOffset)
        return std::nullopt;
    return static_cast<std::size_t>(kOffsetOfCode[code]);
}

KeyName driverKeyName(KeyCode code) {
    const KeyCode index = code - kFirstIndividualCode;
    return code >= kFirstIndividualCode && index < individuallyLitKeys.size()
               ? individuallyLitKeys[index].keyName
               : code;
}

std::optional<std::string_view> displayNameOfKey(KeyCode code) {
    const auto* key = std::ranges::find(kKeyTable, code, &KeyEntry::code);
    if (key == kKeyTable.end())
        return std::nullopt;
    return key->displayName;
}

std::optional<KeyCode> keyOfDisplayName(std::string_view name) {
    const auto* key = std::ranges::find(kKeyTable, name, &KeyEntry::displayName);
    if (key == kKeyTable.end())
        return std::nullopt;
    return key->code;
}

std::vector<std::string> sortedKeyDisplayNames() {
    std::vector<std::string> names;
    names.reserve(kKeyTable.size());
    for (const KeyEntry& key : kKeyTable)
        names.emplace_back(key.displayName);
    std::ranges::sort(names);
    return names;
}

} // namespace glimra::lighting
