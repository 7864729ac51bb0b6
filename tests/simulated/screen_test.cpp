#include "simulated/screen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace glimra::simulated {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr SimulatedScreen::StripCells kCells{0x10, 0x11, 0x12, 0x13, 0x14, 0x15,
                                             0x16, 0x17, 0x18, 0x19, 0x1A};

std::vector<std::uint32_t> pixels(const SimulatedScreen& screen, const platform::ScreenRect& rect) {
    const std::optional<platform::Image> image = screen.capture(rect);
    return image ? image->pixels : std::vector<std::uint32_t>{};
}

TEST(SimulatedScreenTest, CellsCoverThePixelsWhoseCentresTheyHold) {
    SimulatedScreen screen;
    screen.setStripGeometry(1.0, 5.5); // cells of half a point
    screen.paintStrip(kCells);
    EXPECT_THAT(pixels(screen, {0.0, 0.0, 8.0, 1.0}),
                ElementsAre(0, 0x11, 0x13, 0x15, 0x17, 0x19, 0, 0)); // the last half cell holds no centre
    screen.connectDisplay(100.0, 50.0, 2.0);
    EXPECT_THAT(pixels(screen, {0.0, 0.0, 8.0, 1.0}), Each(0));
    screen.paintStrip(kCells);
    EXPECT_THAT(pixels(screen, {1.0, 0.0, 5.5, 1.0}),
                ElementsAre(0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1A));
    EXPECT_THAT(pixels(screen, {1.0, 1.0, 2.0, 1.0}), Each(0)); // below the strip
}

TEST(SimulatedScreenTest, ImageEndsWithTheScreenAndKeepsItsPositions) {
    SimulatedScreen screen;
    screen.connectDisplay(20.0, 10.0, 2.0);
    screen.setStripGeometry(0.0, 11.0);
    screen.paintStrip(kCells);
    const std::optional<platform::Image> left = screen.capture({-3.0, 0.0, 5.0, 1.0});
    ASSERT_TRUE(left);
    EXPECT_EQ(left->firstColumn, 6);
    EXPECT_THAT(left->pixels, ElementsAre(0x10, 0x10, 0x11, 0x11));
    EXPECT_FALSE(left->view().colorAt(5));
    EXPECT_TRUE(left->view().colorAt(6));

    const std::optional<platform::Image> right = screen.capture({19.0, 0.0, 1e300, 1.0});
    ASSERT_TRUE(right);
    EXPECT_EQ(right->firstColumn, 0);
    EXPECT_EQ(right->pixels.size(), 2U);
}

TEST(SimulatedScreenTest, NothingToCapture) {
    constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
    SimulatedScreen screen;
    EXPECT_FALSE(screen.capture({-80.0, 0.0, 80.0, 1.0}));
    EXPECT_FALSE(screen.capture({1920.0, 0.0, 80.0, 1.0}));
    EXPECT_FALSE(screen.capture({0.0, 1080.0, 80.0, 1.0}));
    EXPECT_FALSE(screen.capture({0.0, 0.0, 0.0, 1.0}));
    EXPECT_FALSE(screen.capture({0.0, 0.0, kNoNumber, 1.0}));
    screen.disconnectDisplay();
    SimulatedCapture capture(screen);
    EXPECT_EQ(capture.activeDisplayCount(), 0);
    EXPECT_FALSE(capture.capture({0.0, 0.0, 80.0, 1.0}));
}

} // namespace
} // namespace glimra::simulated
