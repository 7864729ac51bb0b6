#include "keyboards/virtual_keyboard.h"

#include "lighting/led_bitmap.h"

#include <gtest/gtest.h>

namespace glimra::keyboards {
namespace {

using namespace std::chrono_literals;

constexpr KeyName kEnter = 0x1C;
constexpr KeyName kEsc = 0x01;

struct VirtualKeyboardTest : testing::Test {
    VirtualKeyboardTest() {
        keyboard.changed.observe([this] { ++changes; });
    }
    Rgb colorOf(KeyName key) const { return keyboard.model().colorsAt(now).at(keyIndex(key).value()); }
    /// Every call but the two that open and close; how many were taken.
    int callEverything() {
        int a = -1;
        int b = -1;
        int c = -1;
        return keyboard.LogiLedGetSdkVersion(a, b, c) + keyboard.LogiLedSetTargetDevice(4) +
               keyboard.LogiLedSetLighting(100, 100, 100) +
               keyboard.LogiLedSetLightingFromBitmap(lighting::blankBitmap()) +
               keyboard.LogiLedSetLightingForKeyWithKeyName(kEsc, 1, 2, 3) +
               keyboard.LogiLedFlashSingleKey(kEsc, 1, 2, 3, 0, 100) +
               keyboard.LogiLedPulseSingleKey(kEnter, 1, 2, 3, 4, 5, 6, 100, true) +
               keyboard.LogiLedStopEffectsOnKey(kEsc) + keyboard.LogiLedStopEffects();
    }

    Time now = 3s;
    VirtualKeyboard keyboard{[this] { return now; }};
    int changes = 0;
};

TEST_F(VirtualKeyboardTest, TakesCallsOnlyBetweenInitAndShutdown) {
    EXPECT_EQ(callEverything(), 0);
    keyboard.LogiLedShutdown();
    EXPECT_EQ(changes, 0);

    ASSERT_TRUE(keyboard.LogiLedInit());
    EXPECT_EQ(callEverything(), 9);
    EXPECT_EQ(changes, 7);
    EXPECT_EQ(colorOf(kEnter), (Rgb{255, 255, 255}));
    keyboard.LogiLedFlashSingleKey(kEnter, 100, 0, 0, 0, 0);
    changes = 0;
    keyboard.LogiLedShutdown();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(colorOf(kEnter), (Rgb{0, 0, 0}));
    EXPECT_EQ(callEverything(), 0);

    ASSERT_TRUE(keyboard.LogiLedInit());
    EXPECT_EQ(callEverything(), 9);
}

TEST_F(VirtualKeyboardTest, EffectsBeginAtTheTimeOfTheCallAndLastMilliseconds) {
    keyboard.LogiLedInit();
    keyboard.LogiLedFlashSingleKey(kEsc, 100, 0, 0, 300, 100);
    keyboard.LogiLedPulseSingleKey(kEnter, 0, 20, 40, 60, 80, 100, 200, false);
    EXPECT_EQ(colorOf(kEsc), (Rgb{255, 0, 0}));
    EXPECT_EQ(colorOf(kEnter), (Rgb{0, 51, 102}));
    now += 100ms;
    EXPECT_EQ(colorOf(kEsc), (Rgb{0, 0, 0}));
    EXPECT_EQ(colorOf(kEnter), (Rgb{153, 204, 255}));
    now += 100ms;
    EXPECT_EQ(colorOf(kEsc), (Rgb{255, 0, 0}));
    EXPECT_EQ(colorOf(kEnter), (Rgb{0, 0, 0}));
    keyboard.LogiLedPulseSingleKey(kEnter, 0, 20, 40, 60, 80, 100, 200, true);
    now += 300ms;
    EXPECT_EQ(colorOf(kEsc), (Rgb{0, 0, 0}));
    EXPECT_EQ(colorOf(kEnter), (Rgb{153, 204, 255}));
}

TEST_F(VirtualKeyboardTest, AnUnknownKeyIsRefusedAndChangesNothing) {
    keyboard.LogiLedInit();
    EXPECT_FALSE(keyboard.LogiLedSetLightingForKeyWithKeyName(0, 1, 2, 3));
    EXPECT_FALSE(keyboard.LogiLedFlashSingleKey(0x200, 1, 2, 3, 0, 100));
    EXPECT_FALSE(keyboard.LogiLedPulseSingleKey(0xFFFA, 1, 2, 3, 4, 5, 6, 100, true));
    EXPECT_FALSE(keyboard.LogiLedStopEffectsOnKey(~KeyName{0}));
    EXPECT_EQ(changes, 0);
}

} // namespace
} // namespace glimra::keyboards
