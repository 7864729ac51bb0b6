#pragma once

#include "platform/color.h"

namespace glimra::platform {

/// The surface that a view draws on. Coordinates are in points, from the bottom left corner, y upwards.
class Painter {
public:
    virtual ~Painter() = default;
    /// Fills a rectangle; `opacity` from 0 to 1.
    virtual void fillRect(int x, int y, int width, int height, const Color& color, double opacity) = 0;
};

} // namespace glimra::platform
