#pragma once

#include "platform/locked.h"
#include "platform/screen_capture.h"

#include <array>

namespace glimra::screenlink {

inline constexpr std::size_t kCellCount = 11;

/// Where the strip's cells are sampled, as pixel positions in the captured row.
using PixelOffsets = std::array<int, kCellCount>;

/// What one reading cycle needs to know of the strip, always changed as a whole.
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

} // namespace glimra::screenlink
