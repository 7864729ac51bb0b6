#include "events/band_painter.h"

#include <gtest/gtest.h>

namespace glimra::events {
namespace {

constexpr Rgb kColor{1, 2, 3};

/// What the band painter makes of a transparent black bitmap.
LedBitmap painted(int bandCount, int index) {
    LedBitmap bitmap{};
    paintBand(bitmap, bandCount, index, kColor);
    return bitmap;
}

bool isPainted(const LedBitmap& bitmap, KeyCode key) {
    const std::size_t offset = lighting::keyBitmapOffset(key).value();
    return bitmap[offset] == kColor.blue && bitmap[offset + 1] == kColor.green &&
           bitmap[offset + 2] == kColor.red && bitmap[offset + 3] == 255;
}

constexpr KeyCode kTwo = 0x3;
constexpr KeyCode kNumPadStar = 0x37;
constexpr KeyCode kNumPadMinus = 0x4A;

TEST(BandPainter, LimitsCountAndIndex) {
    EXPECT_EQ(painted(1, 0), painted(2, 0));
    EXPECT_EQ(painted(30, 4), painted(21, 4));
    EXPECT_EQ(painted(8, 9), painted(8, 7));
    EXPECT_NE(painted(8, 7), painted(8, 6));
}

TEST(BandPainter, PaintsTheKeysBetweenTheBordersAndNothingElse) {
    EXPECT_TRUE(isPainted(painted(8, 0), lighting::kEscKey));
    EXPECT_FALSE(isPainted(painted(8, 1), lighting::kEscKey));
    EXPECT_TRUE(isPainted(painted(8, 7), kNumPadMinus));
    EXPECT_FALSE(isPainted(painted(8, 6), kNumPadMinus));

    const LedBitmap leftHalf = painted(2, 0);
    const std::size_t cellOfNoKey = (4 * 21 + 1) * 4;
    EXPECT_EQ(leftHalf[cellOfNoKey], 0);
    EXPECT_EQ(leftHalf[cellOfNoKey + 3], 0);
}

TEST(BandPainter, SharesAKeyOnABorder) {
    EXPECT_TRUE(isPainted(painted(10, 0), kTwo));
    EXPECT_TRUE(isPainted(painted(10, 1), kTwo));
    EXPECT_FALSE(isPainted(painted(10, 2), kTwo));
}

TEST(BandPainter, LeavesTheGapOfTheDivisionBeforeTheLastBand) {
    EXPECT_FALSE(isPainted(painted(21, 19), kNumPadStar));
    EXPECT_FALSE(isPainted(painted(21, 20), kNumPadStar));
    EXPECT_TRUE(isPainted(painted(21, 20), kNumPadMinus));
}

} // namespace
} // namespace glimra::events
