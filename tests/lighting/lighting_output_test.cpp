#include "lighting/lighting_output.h"
#include "support/fake_driver.h"

#include <gmock/gmock.h>

#include <limits>

namespace glimra::lighting {
namespace {

using testing::Contains;
using testing::ElementsAre;

TEST(ColorConversion, TruncatesAndLimits) {
    EXPECT_EQ(toRgb({1.0, 0.5, 0.3}), (Rgb{255, 127, 76}));
    EXPECT_EQ(toPercentages({1.0, 0.5, 0.3}), (Percentages{100, 50, 30}));
    EXPECT_EQ(toPercentages({0.999, 0.0, 0.004}), (Percentages{99, 0, 0}));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(toRgb({nan, infinity, -infinity}), (Rgb{0, 255, 0}));
    EXPECT_EQ(toPercentages({-0.2, 1.2, nan}), (Percentages{0, 100, 0}));
}

TEST(LedBitmap, WritesKeysAndLeavesEverythingElseWhite) {
    ColorSet colors{};
    colors[5] = {1.0, 0.5, 0.3};
    const KeyMap map(kKeyCodeCount, 5);
    const LedBitmap bitmap = buildColorBitmap(colors, map);

    std::size_t untouched = 0;
    for (std::size_t cell = 0; cell < bitmap.size(); cell += 4) {
        EXPECT_EQ(bitmap[cell + 3], 0xFF);
        const std::array<int, 3> bgr{bitmap[cell], bitmap[cell + 1], bitmap[cell + 2]};
        if (bgr == std::array{0xFF, 0xFF, 0xFF})
            ++untouched;
        else
            EXPECT_EQ(bgr, (std::array{76, 127, 255}));
    }
    EXPECT_EQ(untouched, 22U);
}

TEST(LedBitmap, CooldownColourOnlyForDimmedKeysAndOnlyWhenShown) {
    ColorSet colors{};
    colors[kCooldownSlot] = {1.0, 0.0, 0.0};
    const KeyMap map(kKeyCodeCount, 0);
    const DimmedKeys dimmed{0, 0x10, 521};
    EXPECT_EQ(buildColorBitmapWithCooldowns(colors, map, false, dimmed), buildColorBitmap(colors, map));

    LedBitmap expected = buildColorBitmap(colors, map);
    expected[*keyBitmapOffset(0x10) + 2] = 0xFF;
    EXPECT_EQ(buildColorBitmapWithCooldowns(colors, map, true, dimmed), expected);
}

TEST(LedBitmap, AMapThatIsTooShortOrNamesNoSlotGivesBlack) {
    const ColorSet colors = LightingState{}.keyboardColorSet;
    EXPECT_EQ(mappedColor(colors, {4, 13, -1}, 0), colors[4]);
    EXPECT_EQ(mappedColor(colors, {4, 13, -1}, 1), Color{});
    EXPECT_EQ(mappedColor(colors, {4, 13, -1}, 2), Color{});
    EXPECT_EQ(mappedColor(colors, {4, 13, -1}, 3), Color{});
}

class LightingOutputTest : public testing::Test {
protected:
    tests::FakeDriver driver;
    tests::FixedRandom random;
    LightingState state;
    LightingOutput output{driver, random, state};
};

TEST_F(LightingOutputTest, ProfileIsItsBitmapAndThenTheKeysBeyondIt) {
    state.keyboardColorSet[2] = {0.3, 0.0, 1.0};
    state.keyboardColorSet[kCooldownSlot] = {1.0, 0.0, 0.0};
    state.keyToColorMap[521] = 2;
    state.dimmedKeys = {522};
    state.useSpellCooldowns[0] = true;
    state.keyboardColorBitmap[3][0] = 7;

    output.showProfileLighting(3);
    ASSERT_EQ(driver.calls.size(), 12U);
    EXPECT_EQ(driver.calls[0], "SetLightingFromBitmap");
    EXPECT_EQ(driver.bitmaps[0][0], 7);
    EXPECT_EQ(driver.calls[1], "SetLightingForKeyWithKeyName 65521 0 100 100"); // G1, still cyan
    EXPECT_EQ(driver.calls[10], "SetLightingForKeyWithKeyName 1048561 30 0 100");
    EXPECT_EQ(driver.calls[11], "SetLightingForKeyWithKeyName 1048562 100 0 0");

    state.useSpellCooldowns[0] = false;
    driver.take();
    output.setKeyToProfileColor(522, 0xFFFF2);
    EXPECT_THAT(driver.calls, ElementsAre("SetLightingForKeyWithKeyName 1048562 0 100 100"));
}

TEST_F(LightingOutputTest, WholeKeyboardColourMeansAllDevicesOnlyInSingleColourMode) {
    output.setAllKeysColor({0.5, 0.4, 0.5});
    EXPECT_THAT(driver.take(), ElementsAre("SetTargetDevice 4", "SetLighting 50 40 50"));
    state.singleColorFlag = true;
    output.setAllKeysColor({2.0, 0.0, 0.0});
    EXPECT_THAT(driver.take(), ElementsAre("SetTargetDevice 7", "SetLighting 100 0 0"));
}

TEST_F(LightingOutputTest, ScatterPulseStartsBothGroupsAndStopsExactlyThose) {
    random.value = 249;
    output.startScatterPulse();
    ASSERT_EQ(driver.calls.size(), 3U + 15U + 12U);
    EXPECT_THAT(std::vector(driver.calls.begin(), driver.calls.begin() + 4),
                ElementsAre("SetTargetDevice 7", "SetTargetDevice 4", "SetLighting 50 40 50",
                            "PulseSingleKey 58 50 40 50 100 85 100 899 true"));
    EXPECT_EQ(driver.calls.back(), "PulseSingleKey 65521 50 40 50 20 10 20 899 true");
    std::vector<std::string> expected{"SetTargetDevice 4"};
    for (const std::string& call : driver.take())
        if (call.starts_with("PulseSingleKey "))
            expected.push_back("StopEffectsOnKey " + call.substr(15, call.find(' ', 15) - 15));
    expected.emplace_back("SetTargetDevice 7");

    output.stopScatterPulse();
    EXPECT_EQ(driver.calls, expected);
}

} // namespace
} // namespace glimra::lighting
