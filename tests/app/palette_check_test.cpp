#include "app/palette_check.h"

#include <gmock/gmock.h>

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

TEST(PaletteCheck, WarnsOfColorsThatAnyoneOrSomeCannotTellFromTheCooldownColor) {
    using testing::ElementsAre;
    using testing::IsEmpty;
    constexpr lighting::KeyCode kQ = 0x10;
    constexpr int kSlotOfC = 2;
    constexpr int kSlotOfD = 3;
    lighting::ColorSet colors;
    colors.fill({0, 0, 1});
    colors[kSlotOfC] = {0.97, 0.02, 0.0};
    // Without the sense for green, and only then, this is like a dark red.
    colors[kSlotOfD] = {0.0, 0.5, 0.0};
    profiles::ActionKeyMap keys;
    keys.actionBar1Keys[0] = kQ;
    const auto check = [&](std::span<const lighting::Color> palette, int slotOfQ, double red) {
        lighting::KeyMap map(lighting::kKeyCodeCount, lighting::kColorASlot);
        map[kQ] = slotOfQ;
        colors[lighting::kCooldownSlot] = {red, 0.0, 0.0};
        return checkPalette(palette, map, keys);
    };
    EXPECT_THAT(check(colors, lighting::kColorASlot, 1.0), IsEmpty());
    EXPECT_THAT(check(colors, kSlotOfC, 1.0), ElementsAre(PaletteWarning{kSlotOfC, ColorVision::Common}));
    EXPECT_THAT(check(colors, kSlotOfD, 0.7), ElementsAre(PaletteWarning{kSlotOfD, ColorVision::Deutan}));
    // No slots, or a key map from elsewhere: nothing to say.
    EXPECT_THAT(check({}, kSlotOfD, 0.7), IsEmpty());
    EXPECT_THAT(check(colors, 99, 0.7), IsEmpty());
}

} // namespace
} // namespace glimra::app
