#include "desktop/x11/pixels_per_point.h"

#include "platform/silent_log.h"
#include "screenlink/scan_settings.h"

namespace glimra::desktop {

int storedPixelsPerPoint(const platform::SettingsReader& settings) {
    constexpr platform::Setting<double> kSetting = platform::settings::kScanPixelsPerPoint;
    platform::SilentLog log;
    screenlink::ScanSettings ignored;
    if (screenlink::loadScanSettings(ignored, {settings.defaults, log}))
        return 1;
    std::optional<double> pixels = platform::storedDouble(settings.defaults, kSetting.key);
    if (pixels != 1.0 && pixels != 2.0)
        pixels.reset();
    return static_cast<int>(
        settings.checked(pixels, kSetting.key, kSetting.complaint).value_or(kSetting.factory));
}

} // namespace glimra::desktop
