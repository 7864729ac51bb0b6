#pragma once

#include "events/animation.h"
#include "events/band_painter.h"

namespace glimra::events {

/// Paints a frame of an animation. `working` is what the frame before left, at first the profile's bitmap.
void paintFrame(LedBitmap& working, const Frame& frame, const LedBitmap& profile);

} // namespace glimra::events
