#include "lighting/lighting_output.h"

#include <gmock/gmock.h>

#include <limits>

namespace glimra::lighting {
namespace {

TEST(ColorConversion, TruncatesAndLimits) {
    EXPECT_EQ(toRgb({1.0, 0.5, 0.3}), (Rgb{255, 127, 76}));
    EXPECT_EQ(toPercentages({1.0, 0.5, 0.3}), (Percentages{100, 50, 30}));
    EXPECT_EQ(toPercentages({0.999, 0.0, 0.004}), (Percentages{99, 0, 0}));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(toRgb({nan, infinity, -infinity}), (Rgb{0, 255, 0}));
    EXPECT_EQ(toPercentages({-0.2, 1.2, nan}), (Percentages{0, 100, 0}));
}

TEST(LedBitmap, AMapThatIsTooShortOrNamesNoSlotGivesBlack) {
    const ColorSet colors = LightingState{}.keyboardColorSet;
    EXPECT_EQ(mappedColor(colors, {4, 13, -1}, 0), colors[4]);
    EXPECT_EQ(mappedColor(colors, {4, 13, -1}, 1), Color{});
    EXPECT_EQ(mappedColor(colors, {4, 13, -1}, 2), Color{});
    EXPECT_EQ(mappedColor(colors, {4, 13, -1}, 3), Color{});
}

} // namespace
} // namespace glimra::lighting
