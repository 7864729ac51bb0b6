#include "desktop/windows/key_lights.h"

#include <algorithm>
#include <cstring>

namespace glimra::desktop {

namespace {

/// Exact for a strength of 255, so that a color that is wholly seen is the very color.
unsigned portion(unsigned channel, unsigned strength) {
    const unsigned product = channel * strength + 128;
    return (product + (product >> 8)) >> 8;
}

void addRow(std::uint8_t* pixels, const std::uint8_t* strength, int count, keyboards::Rgb color) {
    // Blue, green, red and a byte that is not used, on the machines that Qt runs on.
    for (const std::uint8_t* const end = strength + count; strength != end; ++strength, pixels += 4) {
        const unsigned share = *strength;
        pixels[0] = static_cast<std::uint8_t>(std::min(255U, pixels[0] + portion(color.blue, share)));
        pixels[1] = static_cast<std::uint8_t>(std::min(255U, pixels[1] + portion(color.green, share)));
        pixels[2] = static_cast<std::uint8_t>(std::min(255U, pixels[2] + portion(color.red, share)));
    }
}

} // namespace

void paintLights(QImage& picture, const QImage& dark, const KeyLights& lights,
                 const keyboards::KeyColors& colors, const QRect& part) {
    const QRect area = part.intersected(picture.rect());
    if (area.isEmpty())
        return;
    const auto at = [](auto* row, int x) { return row + 4 * std::ptrdiff_t{x}; };
    for (int y = area.top(); y <= area.bottom(); ++y)
        std::memcpy(at(picture.scanLine(y), area.left()), at(dark.constScanLine(y), area.left()),
                    4 * static_cast<std::size_t>(area.width()));
    for (std::size_t index = 0; index < lights.size(); ++index) {
        const KeyLight& light = lights[index];
        const QRect reached = light.place.intersected(area);
        if (reached.isEmpty() || colors[index] == keyboards::Rgb{})
            continue;
        const int left = reached.left() - light.place.left();
        for (int y = reached.top(); y <= reached.bottom(); ++y) {
            const std::ptrdiff_t row = std::ptrdiff_t{y - light.place.top()} * light.place.width();
            addRow(at(picture.scanLine(y), reached.left()), light.strength.data() + row + left,
                   reached.width(), colors[index]);
        }
    }
}

} // namespace glimra::desktop
