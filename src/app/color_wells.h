#pragma once

#include "app/outlets.h"
#include "profiles/canvas_buffer.h"

namespace glimra::app {

/// Shows a colour set in the thirteen wells and gives the canvas the chosen paint button's colour.
void applyColorSetToWells(Outlets& outlets, const lighting::ColorSet& colorSet,
                          profiles::CanvasBuffer& canvas);

/// The canvas paints with the colour of the chosen paint button from now on.
void choosePaintColor(const Outlets& outlets, profiles::CanvasBuffer& canvas);

/// The slot that a well shows and edits.
int slotOfWell(const platform::ColorWell& well);

/// The well with a tag; the cooldown colour's for a tag outside 1 to 12.
platform::ColorWell& wellOfTag(Outlets& outlets, int tag);

/// The thirteen wells.
std::array<platform::ColorWell*, lighting::kColorSlotCount> colorWells(Outlets& outlets);

} // namespace glimra::app
