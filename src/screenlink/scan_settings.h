#pragma once

#include "platform/stored_values.h"

namespace glimra::screenlink {

/// Where the strip lies, in points.
struct ScanSettings {
    double scanWidth = 0.0;
    int scanOffset = 0;
};

/// What is used as long as no calibration is stored.
ScanSettings factoryScanSettings();

/// Reads the stored calibration. Returns true when nothing usable was stored; the settings are the factory's
/// then.
bool loadScanSettings(ScanSettings& settings, const platform::SettingsReader& stored);

} // namespace glimra::screenlink
