#include "desktop/settings/light_places.h"

#include "keyboards/model/keyboard_model.h"
#include "platform/stored_values.h"

namespace glimra::desktop {

using keyboards::openrgb::HandPlacing;

namespace {

constexpr std::string_view kPrefix = "lightPlaces.";

HandPlacing::Places placesIn(const platform::NumberArray& numbers) {
    HandPlacing::Places places;
    for (std::size_t i = 0; i + 1 < numbers.size(); i += 2) {
        const std::optional<std::int64_t> led = platform::toInteger(numbers[i]);
        const std::optional<std::int64_t> code = platform::toInteger(numbers[i + 1]);
        if (!led || *led < 0 || !code || *code < 0 || *code > 0xFFFF)
            continue;
        const auto key = keyboards::keyIndex(lighting::driverKeyName(static_cast<lighting::KeyCode>(*code)));
        if (key)
            places.push_back({static_cast<std::size_t>(*led), *key});
    }
    return places;
}

} // namespace

HandPlacing::AllPlaces loadLightPlaces(const platform::UserDefaults& settings) {
    HandPlacing::AllPlaces all;
    for (const auto& [name, value] : settings.all())
        if (const auto* const numbers = std::get_if<platform::NumberArray>(&value);
            numbers != nullptr && name.starts_with(kPrefix))
            all[name.substr(kPrefix.size())] = placesIn(*numbers);
    return all;
}

void storeLightPlaces(platform::UserDefaults& settings, const std::string& board,
                      const HandPlacing::Places& places) {
    platform::NumberArray numbers;
    for (const keyboards::openrgb::LedOfKey& light : places) {
        numbers.emplace_back(static_cast<std::int64_t>(light.led));
        numbers.emplace_back(static_cast<std::int64_t>(lighting::kKeyboardLayout[light.key].code));
    }
    settings.set(std::string(kPrefix) + board, std::move(numbers));
}

} // namespace glimra::desktop
