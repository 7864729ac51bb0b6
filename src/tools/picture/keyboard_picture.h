#pragma once

#include "keyboards/model/keyboard_model.h"
#include "tools/picture/picture.h"

namespace glimra::tools {

/// Draws the keyboard, each key in its colour, with so many pixels in a point of its layout. A legend that is
/// wider than its key, as some are with one pixel, is left out.
Picture drawKeyboard(const keyboards::KeyColors& colors, int pixelsPerPoint);

} // namespace glimra::tools
