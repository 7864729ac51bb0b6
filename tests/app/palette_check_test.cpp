#include "app/palette_check.h"

#include <gtest/gtest.h>

namespace glimra::app {
namespace {

// Calculated elsewhere, from the published matrices of sRGB, CIE 1976 L*a*b* and the simulation of sight.
TEST(PaletteCheck, DistancesAreThoseOfThePublishedFormulas) {
    const struct {
        platform::Color a, b;
        std::array<double, 4> difference; // of kColorVisions
    } rows[] = {
        {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {170.57, 65.87, 27.75, 153.24}},
        {{1.0, 0.5, 0.02}, {0.2, 1.0, 0.6}, {121.17, 37.61, 46.03, 121.24}},
        {{0.6, 0.03, 0.9}, {0.9, 0.7, 0.1}, {171.19, 157.40, 149.42, 47.61}},
        {{0.02, 0.01, 0.03}, {0.1, 0.4, 0.2}, {57.24, 48.46, 41.50, 46.24}},
    };
    for (const auto& row : rows)
        for (std::size_t vision = 0; vision < kColorVisions.size(); ++vision)
            EXPECT_NEAR(visibleDifference(row.a, row.b, kColorVisions[vision]), row.difference[vision], 0.1);
}

} // namespace
} // namespace glimra::app
