#include "events/band_painter.h"

#include <gtest/gtest.h>

namespace glimra::events {
namespace {

/// What the band painter makes of a transparent black bitmap.
LedBitmap painted(int bandCount, int index) {
    LedBitmap bitmap{};
    paintBand(bitmap, bandCount, index, {1, 2, 3});
    return bitmap;
}

/// Whether the band painter gives a key's cell its colour, opaque.
bool paints(int bandCount, int index, KeyCode key) {
    const LedBitmap bitmap = painted(bandCount, index);
    const auto cell = std::span(bitmap).subspan(lighting::keyBitmapOffset(key).value());
    return cell[0] == 3 && cell[1] == 2 && cell[2] == 1 && cell[3] == 255;
}

TEST(BandPainter, LimitsCountAndIndex) {
    EXPECT_EQ(painted(1, 0), painted(2, 0));
    EXPECT_EQ(painted(30, 4), painted(21, 4));
    EXPECT_EQ(painted(8, 9), painted(8, 7));
    EXPECT_NE(painted(8, 7), painted(8, 6));
}

TEST(BandPainter, PaintsKeysBetweenTheBordersAndOnThem) {
    constexpr KeyCode kTwo = 0x3;
    constexpr KeyCode kNumPadStar = 0x37;
    constexpr KeyCode kNumPadMinus = 0x4A;
    EXPECT_TRUE(paints(8, 0, lighting::kEscKey));
    EXPECT_FALSE(paints(8, 1, lighting::kEscKey));
    EXPECT_TRUE(paints(8, 7, kNumPadMinus));
    EXPECT_FALSE(paints(8, 6, kNumPadMinus));
    EXPECT_TRUE(paints(10, 0, kTwo) && paints(10, 1, kTwo));
    // 725 is no multiple of 21: what the division leaves lies before the last band, in none.
    EXPECT_FALSE(paints(21, 19, kNumPadStar) || paints(21, 20, kNumPadStar));
    EXPECT_TRUE(paints(21, 20, kNumPadMinus));
    const std::size_t alphaOfNoKey = (4 * 21 + 1) * 4 + 3;
    EXPECT_EQ(painted(2, 0)[alphaOfNoKey], 0);
}

} // namespace
} // namespace glimra::events
