#pragma once

#include "platform/stored_values.h"

namespace glimra::desktop {

/// Real pixels for a point by which the strip is read, 1 or 2: as stored with the last calibration, 1 without
/// one.
int storedPixelsPerPoint(const platform::SettingsReader& settings);

} // namespace glimra::desktop
