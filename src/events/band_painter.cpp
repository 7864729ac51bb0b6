#include "events/band_painter.h"

#include <algorithm>

namespace glimra::events {

namespace {

constexpr int kKeyboardWidth = 725;

/// Where each key of the LED bitmap lies from left to right, in the key table's order.
constexpr std::array kPositions{
    // Esc to Pause
    6, 60, 92, 126, 161, 215, 248, 282, 315, 370, 403, 436, 469, 514, 547, 580,
    // ~ to NumPad -
    6, 38, 72, 104, 137, 170, 203, 237, 270, 304, 336, 370, 403, 436, 512, 546, 579, 623, 656, 689, 722,
    // Tab to NumPad +
    6, 55, 88, 122, 153, 186, 219, 252, 286, 317, 352, 386, 418, 453, 512, 546, 579, 623, 656, 689, 722,
    // Caps Lock to NumPad 6
    6, 63, 95, 128, 163, 195, 229, 260, 293, 327, 358, 393, 427, 623, 656, 689,
    // Left Shift to NumPad Enter
    6, 79, 113, 145, 179, 211, 244, 277, 309, 343, 376, 410, 545, 623, 656, 689, 722,
    // Left Control to NumPad .
    6, 56, 97, 214, 329, 370, 411, 451, 513, 545, 578, 624, 689};

constexpr std::size_t kKeyCount = lighting::keyBitmapOffsets.size();
static_assert(kPositions.size() == kKeyCount);

constexpr std::array<BandKey, kKeyCount> kBandKeys = [] {
    std::array<BandKey, kKeyCount> keys{};
    for (std::size_t i = 0; i < kKeyCount; ++i)
        keys[i] = {lighting::keyBitmapOffsets[i].code, lighting::keyBitmapOffsets[i].offset, kPositions[i]};
    return keys;
}();

} // namespace

std::span<const BandKey> keysOfRow(std::size_t row) {
    const auto firstFrom = [](std::size_t offset) {
        return std::ranges::lower_bound(kBandKeys, offset, {}, &BandKey::offset);
    };
    return {firstFrom(row * kRowBytes), firstFrom((row + 1) * kRowBytes)};
}

void paintBand(LedBitmap& bitmap, int bandCount, int index, Rgb color) {
    const int count = std::clamp(bandCount, 2, 21);
    const int width = kKeyboardWidth / count;
    // The last band is measured from the right edge: the division may leave a gap before it.
    const int left = index >= count - 1 ? kKeyboardWidth - width : index * width;
    for (const BandKey& key : kBandKeys)
        if (key.position >= left && key.position <= left + width)
            paintOpaqueCell(bitmap, key.offset, color);
}

void paintOpaqueCell(LedBitmap& bitmap, std::size_t offset, Rgb color) {
    lighting::paintCell(bitmap, offset, color);
    bitmap[offset + 3] = 0xFF;
}

} // namespace glimra::events
