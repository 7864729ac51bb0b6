#pragma once

namespace glimra::platform {

/// An sRGB colour. Components are meant to lie in 0 to 1; whoever turns them into bytes or percentages limits
/// what does not.
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
