#include "screenlink/scan_settings.h"

#include "platform/stored_values.h"

namespace glimra::screenlink {

namespace {

constexpr double kFactoryWidth = 80.0;
constexpr int kFactoryOffset = 2;
/// Beyond this no screen reaches; a stored value beyond it is damage.
constexpr double kLargestPlausible = 1e6;

} // namespace

ScanSettings loadScanSettings(const platform::UserDefaults& defaults) {
    const double width = platform::storedDouble(defaults, "scanWidth").value_or(0.0);
    const std::int64_t offset = platform::storedInteger(defaults, "scanOffset").value_or(0);
    const auto plausible = [](double value) {
        return value >= -kLargestPlausible && value <= kLargestPlausible;
    };
    ScanSettings settings;
    if (plausible(width))
        settings.scanWidth = static_cast<double>(static_cast<float>(width));
    if (plausible(static_cast<double>(offset)))
        settings.scanOffset = static_cast<int>(offset);
    if (static_cast<int>(settings.scanWidth) + settings.scanOffset == 0)
        settings = {kFactoryWidth, kFactoryOffset, true};
    return settings;
}

} // namespace glimra::screenlink
