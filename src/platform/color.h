#pragma once

namespace glimra::platform {

/// An sRGB colour. Components should lie in 0 to 1; code that converts them to bytes or percentages clamps
/// them.
struct Color {
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;

    friend bool operator==(const Color&, const Color&) = default;
};

} // namespace glimra::platform
