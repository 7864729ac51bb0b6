#include "screenlink/scan_settings.h"

#include "platform/stored_values.h"

namespace glimra::screenlink {

namespace {

constexpr double kFactoryWidth = 80.0;
constexpr int kFactoryOffset = 2;
/// Beyond this no screen reaches; a stored value beyond it is damage.
constexpr double kLargestPlausible = 1e6;

} // namespace

ScanSettings factoryScanSettings() {
    return {kFactoryWidth, kFactoryOffset};
}

bool loadScanSettings(ScanSettings& settings, const platform::UserDefaults& defaults) {
    const double width = platform::storedDouble(defaults, "scanWidth").value_or(0.0);
    const std::int64_t offset = platform::storedInteger(defaults, "scanOffset").value_or(0);
    const auto isPlausible = [](double value) {
        return value >= -kLargestPlausible && value <= kLargestPlausible;
    };
    settings.scanWidth = isPlausible(width) ? static_cast<double>(static_cast<float>(width)) : 0.0;
    settings.scanOffset = isPlausible(static_cast<double>(offset)) ? static_cast<int>(offset) : 0;
    if (static_cast<int>(settings.scanWidth) + settings.scanOffset != 0)
        return false;
    settings = factoryScanSettings();
    return true;
}

} // namespace glimra::screenlink
