#include "screenlink/scan_settings.h"

#include <cmath>

namespace glimra::screenlink {

namespace {

constexpr double kFactoryWidth = 80.0;
constexpr int kFactoryOffset = 2;
/// No screen is larger than this, so a larger stored value is damaged.
constexpr double kLargestPlausible = 1e6;

} // namespace

ScanSettings factoryScanSettings() {
    return {kFactoryWidth, kFactoryOffset};
}

bool loadScanSettings(ScanSettings& settings, const platform::SettingsReader& stored) {
    const auto load = [&stored](const platform::Setting<double>& setting) {
        std::optional<double> value = platform::storedDouble(stored.defaults, setting.key);
        if (value && !(std::abs(*value) <= kLargestPlausible))
            value.reset();
        return stored.checked(value, setting.key, setting.complaint).value_or(setting.factory);
    };
    settings.scanWidth = static_cast<double>(static_cast<float>(load(platform::settings::kScanWidth)));
    settings.scanOffset = static_cast<int>(load(platform::settings::kScanOffset));
    if (static_cast<int>(settings.scanWidth) + settings.scanOffset != 0)
        return false;
    settings = factoryScanSettings();
    return true;
}

} // namespace glimra::screenlink
