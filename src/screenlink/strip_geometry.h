#pragma once

#include "platform/locked.h"
#include "platform/screen_capture.h"
#include "screenlink/strip_code.h"

namespace glimra::screenlink {

/// Where the strip's cells are sampled, as pixel positions in the captured row.
using PixelOffsets = std::array<int, kCellCount>;

/// Where a reading cycle finds the strip. Both members belong together and are always replaced together.
struct StripGeometry {
    platform::ScreenRect myScanRect;
    PixelOffsets pixelOffsets{};
};

/// Shared between the reader's thread and the main thread.
using SharedStripGeometry = platform::Locked<StripGeometry>;

/// Position of cell `index` in a strip of `width` points: round(index x width / 11) in single precision,
/// halves away from zero.
int cellPosition(std::size_t index, float width);

PixelOffsets updatePixelOffsets(double scanWidth);

/// The geometry of a strip of `scanWidth` points that begins `scanOffset` points from the left.
StripGeometry stripGeometry(double scanWidth, int scanOffset);

/// A rectangle as "(2.0, 0.0, 80.0, 1.0)".
std::string rectText(const platform::ScreenRect& rect);

} // namespace glimra::screenlink
