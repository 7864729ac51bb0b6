#include "screenlink/strip_geometry.h"

#include "platform/decimal_text.h"

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

StripGeometry stripGeometry(double scanWidth, int scanOffset) {
    return {{static_cast<double>(scanOffset), 0.0, scanWidth, 1.0}, updatePixelOffsets(scanWidth)};
}

std::string rectText(const platform::ScreenRect& rect) {
    return "(" + platform::decimalText(rect.x) + ", " + platform::decimalText(rect.y) + ", " +
           platform::decimalText(rect.width) + ", " + platform::decimalText(rect.height) + ")";
}

} // namespace glimra::screenlink
