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

/// A colour as the LED functions take it, 0 to 100 each.
struct Percentages {
    int red;
    int green;
    int blue;

    friend bool operator==(const Percentages&, const Percentages&) = default;
};

} // namespace glimra::platform
