#include "app/color_painter.h"

#include "support/fake_driver.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace glimra::app {
namespace {

using lighting::Color;

struct DrawnKey {
    std::array<int, 4> rect;
    Color color;
    double opacity;

    friend bool operator==(const DrawnKey&, const DrawnKey&) = default;
};

class RecordingPainter final : public platform::Painter {
public:
    std::vector<DrawnKey> drawn;
    void fillRect(int x, int y, int width, int height, const Color& color, double opacity) override {
        drawn.push_back({{x, y, width, height}, color, opacity});
    }
};

class ColorPainterTest : public ::testing::Test {
protected:
    ColorPainterTest() {
        buffer.keyColorSet.assign(lighting::kColorSlotCount, kPlain);
        buffer.keyColorSet[1] = kCooldown;
        buffer.keyColorSet[4] = kColorA;
        buffer.keyColorSet[6] = kBrush;
        buffer.keysToColors.assign(lighting::kKeyCodeCount, 8);
        buffer.paintColor = 6;
        view.displayNeeded.observe([this] { ++redraws; });
    }

    /// The percentages that a drawing lights a key with.
    std::string lit(lighting::KeyName name) {
        driver.take();
        RecordingPainter painter;
        canvas.drawRect(painter);
        const std::string start = "SetLightingForKeyWithKeyName " + std::to_string(name) + " ";
        for (const std::string& call : driver.calls)
            if (call.starts_with(start))
                return call.substr(start.size());
        return {};
    }

    static constexpr Color kPlain{0.0, 0.0, 0.5};
    static constexpr Color kCooldown{0.3, 0.0, 0.0};
    static constexpr Color kColorA{0.0, 1.0, 1.0};
    static constexpr Color kBrush{0.999, 1.0, 0.0};

    tests::FakeDriver driver;
    tests::FixedRandom random;
    lighting::LightingState state;
    lighting::LightingOutput lighting{driver, random, state};
    profiles::CanvasBuffer buffer;
    profiles::ProfileState profile;
    platform::CanvasView view;
    bool useSingleColorMode = false;
    int redraws = 0;
    profiles::CanvasKeyCodes canvasKeyCodes;
    ColorPainter canvas{{lighting, buffer, profile, view, useSingleColorMode}, canvasKeyCodes};
};

TEST_F(ColorPainterTest, DrawsAndLightsEveryKeyInTheOrderOfTheCodes) {
    EXPECT_EQ(canvasKeyCodes.size(), 115U);
    EXPECT_EQ(canvasKeyCodes.front(), 0x01U);
    EXPECT_EQ(canvasKeyCodes.back(), 0x20AU);
    EXPECT_TRUE(std::ranges::is_sorted(canvasKeyCodes));
    buffer.keysToColors[0x20A] = 6;
    RecordingPainter painter;
    canvas.drawRect(painter);
    ASSERT_EQ(painter.drawn.size(), 115U);
    ASSERT_EQ(driver.calls.size(), 115U);
    EXPECT_EQ(painter.drawn.front(), (DrawnKey{{46, 228, 22, 23}, kPlain, 0.75})); // Esc
    EXPECT_EQ(painter.drawn.back(), (DrawnKey{{148, 4, 60, 10}, kBrush, 0.75}));   // badge
    const std::vector<std::pair<std::size_t, std::string>> expected{
        {0, "1 0 0 50"},       {103, "349 0 0 50"},     {104, "65521 0 0 50"},
        {112, "65529 0 0 50"}, {113, "1048561 0 0 50"}, {114, "1048562 99 100 0"}};
    for (const auto& [index, call] : expected)
        EXPECT_EQ(driver.calls[index], "SetLightingForKeyWithKeyName " + call);
}

TEST_F(ColorPainterTest, CooldownGoesBeforeSingleColourAndThatBeforeTheMap) {
    buffer.dimmedKeys = {0, 2};
    EXPECT_EQ(lit(2), "0 0 50");
    buffer.usingActionbarCooldowns = true;
    EXPECT_EQ(lit(2), "30 0 0");
    EXPECT_EQ(lit(3), "0 0 50");
    useSingleColorMode = true;
    EXPECT_EQ(lit(2), "30 0 0");
    EXPECT_EQ(lit(3), "0 100 100");
    buffer.usingActionbarCooldowns = false;
    EXPECT_EQ(lit(2), "0 100 100");
}

TEST_F(ColorPainterTest, ClicksPaintTheKeyUnderThem) {
    // Left and bottom edges belong to the key (Tab, 46 to 88 by 154 to 177), right and top ones do not.
    for (const auto& [x, y, isHit] : {std::tuple{46.0, 154.0, true},
                                      {87.9, 176.9, true},
                                      {88.0, 160.0, false},
                                      {50.0, 177.0, false},
                                      {45.9, 160.0, false},
                                      {50.0, 153.9, false}}) {
        buffer.keysToColors[0x0F] = 8;
        profile.profileTouched = false;
        redraws = 0;
        canvas.mouseDown(x, y);
        EXPECT_EQ(buffer.keysToColors[0x0F], isHit ? 6 : 8) << x << ", " << y;
        EXPECT_EQ(redraws, isHit ? 1 : 0);
        EXPECT_TRUE(profile.profileTouched); // a miss is an edit too
    }
    EXPECT_EQ(lit(0x0F), "0 0 50");
    // The space bar is a patch, the keypad's plus reaches up over two rows.
    const lighting::KeyMap before = buffer.keysToColors;
    canvas.mouseDown(300, 60);
    EXPECT_EQ(buffer.keysToColors, before);
    canvas.mouseDown(270, 60);
    canvas.mouseDown(770, 177);
    canvas.mouseDown(5, 253);
    lighting::KeyMap painted = before;
    painted[0x39] = painted[0x4E] = painted[0x209] = 6;
    EXPECT_EQ(buffer.keysToColors, painted);
    EXPECT_EQ(lit(0xFFFF1), "99 100 0");
}

TEST_F(ColorPainterTest, AKeyBeyondAShortMapIsLeftAlone) {
    buffer.keysToColors.resize(512);
    canvas.mouseDown(10, 230); // logo
    EXPECT_EQ(buffer.keysToColors.size(), 512U);
    EXPECT_EQ(lit(0xFFFF1), "0 0 0");
}

} // namespace
} // namespace glimra::app
