#pragma once

#include "lighting/color_conversion.h"

#include <cstdint>
#include <vector>

namespace glimra::tools {

/// A picture of at most 256 colours.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<lighting::Rgb> palette;
    /// Row after row from the top, as positions in the palette.
    std::vector<std::uint8_t> pixels;
};

} // namespace glimra::tools
