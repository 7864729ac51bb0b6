#pragma once

#include "platform/color.h"

#include <cstdint>

namespace glimra::lighting {

using platform::Color;
using platform::Percentages;

/// A colour of a frame, as the LED bitmap stores it.
struct Rgb {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;

    friend bool operator==(const Rgb&, const Rgb&) = default;
};

// Both round down. A component below 0 or NaN counts as 0, one above 1 counts as 1.

Percentages toPercentages(const Color& color);
Rgb toRgb(const Color& color);

/// Bytes as fractions of 255.
constexpr Color toColor(Rgb rgb) {
    return {rgb.red / 255.0, rgb.green / 255.0, rgb.blue / 255.0};
}

} // namespace glimra::lighting
