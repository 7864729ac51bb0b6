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
    const auto load = [&stored](std::string_view key) {
        std::optional<double> value = platform::storedDouble(stored.defaults, key);
        if (value && !(std::abs(*value) <= kLargestPlausible))
            value.reset();
        return stored.checked(value, key, "lies on no screen and is ignored.").value_or(0.0);
    };
    settings.scanWidth = static_cast<double>(static_cast<float>(load("scanWidth")));
    settings.scanOffset = static_cast<int>(load("scanOffset"));
    if (static_cast<int>(settings.scanWidth) + settings.scanOffset != 0)
        return false;
    settings = factoryScanSettings();
    return true;
}

} // namespace glimra::screenlink
