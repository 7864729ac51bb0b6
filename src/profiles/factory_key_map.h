#pragma once

#include "profiles/canvas_buffer.h"

namespace glimra::profiles {

/// Writes the factory key map over `map`: slot E for every key of the canvas, then the groups that stand out.
/// Codes beyond both keep what they had.
void applyFactoryKeyMap(lighting::KeyMap& map, const CanvasKeyCodes& canvasKeyCodes);

} // namespace glimra::profiles
