#pragma once

#include "platform/user_defaults.h"

namespace glimra::screenlink {

/// Where the strip lies, in points.
struct ScanSettings {
    double scanWidth = 0.0;
    int scanOffset = 0;
    /// Nothing usable was stored, and these are the factory values.
    bool notFound = false;
};

ScanSettings loadScanSettings(const platform::UserDefaults& defaults);

} // namespace glimra::screenlink
