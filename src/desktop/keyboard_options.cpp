#include "desktop/keyboard_options.h"

#include "desktop/settings/light_places.h"
#include "keyboards/sdk/sdk_driver.h"

#include <cstdlib>

namespace glimra::desktop {

namespace {

/// The driver from the command line, otherwise from the settings.
std::string driverName(const Options& options, const platform::SettingsReader& settings) {
    if (options.keyboard)
        return *options.keyboard;
    constexpr platform::Setting<std::string_view> kSetting = platform::settings::kLedDriver;
    std::optional<std::string> name = platform::storedString(settings.defaults, kSetting.key);
    if (name && name != keyboards::kAutomaticDriver && keyboards::findDriver(*name) == nullptr)
        name.reset();
    return settings.checked(name, kSetting.key, kSetting.complaint).value_or(std::string(kSetting.factory));
}

std::vector<std::filesystem::path> sdkLibraries(const Options& options) {
    if (options.sdkLibrary)
        return {*options.sdkLibrary};
    const char* const home = std::getenv("HOME");
    return keyboards::usualSdkLibraries(home != nullptr ? home : "");
}

} // namespace

keyboards::ChosenKeyboard::Options keyboardOptions(const Options& options,
                                                   const platform::SettingsReader& settings) {
    keyboards::openrgb::Options openRgb;
    openRgb.server = options.openRgbServer.value_or(openRgb.server);
    openRgb.keyboardName = options.openRgbKeyboard;
    openRgb.placing->setAll(loadLightPlaces(settings.defaults));
    return {.driver = driverName(options, settings),
            .drivers = {.sdkLibraries = sdkLibraries(options), .openRgb = openRgb, .hidFolders = {}}};
}

} // namespace glimra::desktop
