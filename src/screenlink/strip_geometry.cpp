#include "screenlink/strip_geometry.h"

#include <cmath>

namespace glimra::screenlink {

int cellPosition(std::size_t index, float width) {
    const float position = static_cast<float>(index) * width / static_cast<float>(kCellCount);
    return static_cast<int>(std::round(position));
}

PixelOffsets updatePixelOffsets(double scanWidth) {
    PixelOffsets offsets{};
    for (std::size_t i = 0; i < offsets.size(); ++i)
        offsets[i] = cellPosition(i, static_cast<float>(scanWidth));
    return offsets;
}

} // namespace glimra::screenlink
