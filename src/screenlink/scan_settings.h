#pragma once

#include "platform/stored_values.h"

namespace glimra::screenlink {

/// Where the strip lies, in points.
struct ScanSettings {
    double scanWidth = 0.0;
    int scanOffset = 0;
};

/// What is read where no calibration was found.
ScanSettings factoryScanSettings();

/// Reads the calibration. True when nothing usable was stored, and the settings are the factory's.
bool loadScanSettings(ScanSettings& settings, const platform::SettingsReader& stored);

} // namespace glimra::screenlink
