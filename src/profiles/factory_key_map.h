#pragma once

#include "profiles/canvas_buffer.h"

namespace glimra::profiles {

/// Writes the factory key map over `map`: every key of the canvas gets the slot of colour E, then some groups
/// of keys get colours of their own. All other entries stay as they are.
void applyFactoryKeyMap(lighting::KeyMap& map, const CanvasKeyCodes& canvasKeyCodes);

} // namespace glimra::profiles
