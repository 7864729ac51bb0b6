#pragma once

#include "platform/color.h"

namespace glimra::platform {

/// What a view draws on: points, origin at the bottom left, y upwards.
class Painter {
public:
    virtual ~Painter() = default;
    /// Fills a rectangle; `opacity` from 0 to 1.
    virtual void fillRect(int x, int y, int width, int height, const Color& color, double opacity) = 0;
};

} // namespace glimra::platform
