#pragma once

#include "platform/color.h"
#include "platform/user_defaults.h"

#include <optional>

namespace glimra::profiles {

// A colour as it is stored: readable text, "sRGB" and then red, green, blue and alpha in the shortest
// decimals that read back to the same doubles. Components may lie outside 0 to 1; they are finite.

platform::Data archiveColor(const platform::Color& color);

/// None when the data is no archived colour. Alpha is read and dropped: a key is lit or not.
std::optional<platform::Color> unarchiveColor(const platform::Data& data);

} // namespace glimra::profiles
