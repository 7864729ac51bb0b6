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

} // namespace glimra::platform
