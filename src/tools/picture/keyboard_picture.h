#pragma once

#include "keyboards/model/keyboard_model.h"
#include "tools/picture/picture.h"

namespace glimra::tools {

/// Draws the keyboard, each key in its colour. A point of the layout is `pixelsPerPoint` pixels wide and
/// high. A legend that is wider than its key is left out; at one pixel some are.
Picture drawKeyboard(const keyboards::KeyColors& colors, int pixelsPerPoint);

} // namespace glimra::tools
