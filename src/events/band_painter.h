#pragma once

#include "lighting/led_bitmap.h"

#include <span>

namespace glimra::events {

using lighting::KeyCode;
using lighting::LedBitmap;
using lighting::Rgb;

/// A key of the LED bitmap.
struct BandKey {
    KeyCode code = lighting::kNoKey;
    /// Of its cell in the bitmap.
    std::size_t offset = 0;
    /// Distance from the keyboard's left edge, 0 to 725.
    int position = 0;
};

/// Bytes of a row of the LED bitmap.
inline constexpr std::size_t kRowBytes = lighting::kBitmapColumns * lighting::kBitmapBytesPerKey;

/// The keys of a row (0 to 5, from the top), from left to right. The six rows are the 104 keys of the bitmap.
std::span<const BandKey> keysOfRow(std::size_t row);

/// Cuts the keyboard into `bandCount` upright bands of equal width (2 to 21; other counts become the nearest)
/// and paints the keys of one of them, fully opaque. `index` counts from 0 at the left; one beyond the last
/// is the last. A key on a border belongs to the bands on both sides of it.
void paintBand(LedBitmap& bitmap, int bandCount, int index, Rgb color);

/// Paints one cell, fully opaque.
void paintOpaqueCell(LedBitmap& bitmap, std::size_t offset, Rgb color);

} // namespace glimra::events
