#include "keyboards/keyboard_model.h"

#include "lighting/led_bitmap.h"

#include <gtest/gtest.h>

#include <random>

namespace glimra::keyboards {
namespace {

using namespace std::chrono_literals;

constexpr KeyName kEsc = 0x01;
constexpr KeyName kQ = 0x10;
constexpr KeyName kG1 = 0xFFF1;
constexpr KeyName kLogo = 0xFFFF1;

constexpr Percentages kRed{100, 0, 0};
constexpr Percentages kBlue{0, 0, 100};
constexpr Rgb kDark{0, 0, 0};
constexpr Rgb kRedLight{255, 0, 0};
constexpr Rgb kBlueLight{0, 0, 255};

Rgb colorOf(const KeyboardModel& model, KeyName key, Time time = 0s) {
    return model.colorsAt(time).at(keyIndex(key).value());
}

TEST(KeyIndex, KnowsEveryDrawnKeyByItsDriverNameAndNothingElse) {
    for (std::size_t index = 0; index < kKeyCount; ++index)
        EXPECT_EQ(keyIndex(lighting::driverKeyName(lighting::kKeyboardLayout[index].code)), index);
    // No key, a gap, the program's own code for G1, neighbours of the named ranges, the largest value.
    for (const KeyName name :
         {0x0U, 0x54U, 0x200U, 0x20AU, 0x210U, 0xFFF0U, 0xFFFAU, 0xFFFF0U, 0xFFFF3U, ~0U})
        EXPECT_EQ(keyIndex(name), std::nullopt) << name;
}

TEST(BaseColors, PercentagesAreLimitedAndRounded) {
    KeyboardModel model;
    EXPECT_EQ(colorOf(model, kEsc), kDark);
    EXPECT_TRUE(model.setKey(kEsc, {50, 1, 99}));
    EXPECT_EQ(colorOf(model, kEsc), (Rgb{128, 3, 252}));
    EXPECT_TRUE(model.setKey(kLogo, {-5, 250, 100}));
    EXPECT_EQ(colorOf(model, kLogo), (Rgb{0, 255, 255}));
    EXPECT_EQ(colorOf(model, kQ), kDark);
    EXPECT_FALSE(model.setKey(512, kRed));
}

TEST(BaseColors, BitmapCoversItsKeysAndLeavesTheOthers) {
    lighting::LedBitmap bitmap = lighting::blankBitmap();
    for (const lighting::KeyBitmapOffset& key : lighting::keyBitmapOffsets)
        lighting::paintCell(bitmap, key.offset, {10, static_cast<std::uint8_t>(key.code & 0xFFU), 30});
    KeyboardModel model;
    model.setLighting(kRed);
    model.setBitmap(bitmap);
    const KeyColors colors = model.colorsAt(0s);
    for (std::size_t index = 0; index < kKeyCount; ++index) {
        const lighting::KeyCode code = lighting::kKeyboardLayout[index].code;
        const Rgb painted{10, static_cast<std::uint8_t>(code & 0xFFU), 30};
        EXPECT_EQ(colors[index], code < lighting::kFirstIndividualCode ? painted : kRedLight) << code;
    }
}

TEST(TargetDevice, NothingHappensWhilePerKeyBoardsAreNotMeant) {
    KeyboardModel model;
    model.setLighting(kRed);
    model.flash(kEsc, kBlue, 0s, 0s, 0s);
    model.setTargetDevice(3);
    model.setLighting(kBlue);
    model.setBitmap(lighting::blankBitmap());
    EXPECT_TRUE(model.setKey(kQ, kBlue));
    EXPECT_TRUE(model.pulse(kQ, kBlue, kBlue, 1s, Repeat::UntilStopped, 0s));
    model.stopEffectsOnKey(kEsc);
    model.stopEffects();
    EXPECT_EQ(colorOf(model, kQ), kRedLight);
    EXPECT_EQ(colorOf(model, kEsc), kBlueLight);
    model.setTargetDevice(4);
    model.stopEffects();
    EXPECT_EQ(colorOf(model, kEsc), kRedLight);
}

TEST(Flash, AlternatesWithTheBaseColorOfTheMoment) {
    KeyboardModel model;
    ASSERT_TRUE(model.flash(kEsc, kRed, 250ms, 100ms, 5s));
    EXPECT_EQ(colorOf(model, kEsc, 5s), kRedLight);
    EXPECT_EQ(colorOf(model, kEsc, 5s + 100ms - 1ns), kRedLight);
    EXPECT_EQ(colorOf(model, kEsc, 5s + 100ms), kDark);
    model.setLighting(kBlue);
    EXPECT_EQ(colorOf(model, kEsc, 5s + 50ms), kRedLight);
    EXPECT_EQ(colorOf(model, kEsc, 5s + 199ms), kBlueLight);
    EXPECT_EQ(colorOf(model, kEsc, 5s + 249ms), kRedLight);
    EXPECT_EQ(colorOf(model, kEsc, 5s + 250ms), kBlueLight);
    EXPECT_EQ(colorOf(model, kQ, 5s), kBlueLight);
}

TEST(Flash, WithoutDurationRunsUntilStoppedAndWithoutIntervalIsSteady) {
    KeyboardModel model;
    model.flash(kEsc, kRed, 0ms, 500ms, 0s);
    model.flash(kQ, kRed, 1s, -1ms, 0s);
    EXPECT_EQ(colorOf(model, kEsc, 24h + 499ms), kRedLight);
    EXPECT_EQ(colorOf(model, kEsc, 24h + 500ms), kDark);
    EXPECT_EQ(colorOf(model, kQ, 999ms), kRedLight);
    EXPECT_EQ(colorOf(model, kQ, 1s), kDark);
    EXPECT_TRUE(model.stopEffectsOnKey(kEsc));
    EXPECT_EQ(colorOf(model, kEsc, 0s), kDark);
    EXPECT_EQ(colorOf(model, kQ, 0s), kRedLight);
    EXPECT_FALSE(model.stopEffectsOnKey(0));
    EXPECT_FALSE(model.flash(0x200, kRed, 0ms, 0ms, 0s));
}

TEST(Pulse, GoesEvenlyThereAndBackOnce) {
    KeyboardModel model;
    model.setKey(kG1, kBlue);
    ASSERT_TRUE(model.pulse(kG1, {100, 0, 20}, {20, 80, 20}, 400ms, Repeat::Once, 1s));
    EXPECT_EQ(colorOf(model, kG1, 1s), (Rgb{255, 0, 51}));
    EXPECT_EQ(colorOf(model, kG1, 1s + 100ms), (Rgb{153, 102, 51}));
    EXPECT_EQ(colorOf(model, kG1, 1s + 200ms), (Rgb{51, 204, 51}));
    EXPECT_EQ(colorOf(model, kG1, 1s + 300ms), (Rgb{153, 102, 51}));
    EXPECT_EQ(colorOf(model, kG1, 1s + 400ms), kBlueLight);
}

TEST(Pulse, RepeatsWithItsPeriodUntilStopped) {
    KeyboardModel model;
    model.pulse(kEsc, kRed, kBlue, 400ms, Repeat::UntilStopped, 0s);
    EXPECT_EQ(colorOf(model, kEsc, 24h), kRedLight);
    EXPECT_EQ(colorOf(model, kEsc, 24h + 200ms), kBlueLight);
    model.setKey(kEsc, {100, 100, 100});
    EXPECT_EQ(colorOf(model, kEsc, 24h + 200ms), kBlueLight);
    model.stopEffects();
    EXPECT_EQ(colorOf(model, kEsc, 24h + 200ms), (Rgb{255, 255, 255}));
}

TEST(Effects, ANewOneReplacesTheOldOneAndOneOfNoLengthIsOverAtOnce) {
    KeyboardModel model;
    model.pulse(kEsc, kRed, kRed, 1s, Repeat::UntilStopped, 0s);
    model.flash(kEsc, kBlue, 1s, 0ms, 0s);
    EXPECT_EQ(colorOf(model, kEsc, 0s), kBlueLight);
    EXPECT_EQ(colorOf(model, kEsc, 1s), kDark);
    model.flash(kQ, kBlue, 0s, 1s, 0s);
    EXPECT_TRUE(model.pulse(kQ, kRed, kRed, 0s, Repeat::UntilStopped, 0s));
    EXPECT_EQ(colorOf(model, kQ, 0s), kDark);
    EXPECT_TRUE(model.flash(kQ, kRed, -1ms, 1s, 0s));
    EXPECT_EQ(colorOf(model, kQ, 0s), kDark);
    EXPECT_EQ(model.nextChange(1s), std::nullopt);
}

TEST(Effects, AskedForAMomentBeforeTheyBeganTheyShowTheirBeginning) {
    KeyboardModel model;
    model.pulse(kEsc, kRed, kBlue, 400ms, Repeat::UntilStopped, 10s);
    model.flash(kQ, kRed, 50ms, 20ms, 10s);
    EXPECT_EQ(colorOf(model, kEsc, 9s), kRedLight);
    EXPECT_EQ(colorOf(model, kQ, 10s - 1ns), kRedLight);
    model.stopEffectsOnKey(kEsc);
    EXPECT_EQ(model.nextChange(9s), 10s + 20ms);
}

TEST(Effects, TheLongestTimesThatCanBeGivenDoNotOverflow) {
    KeyboardModel model;
    model.pulse(kEsc, kRed, kBlue, Duration::max(), Repeat::Once, 10s);
    model.flash(kQ, kRed, Duration::max(), Duration::max(), 10s);
    EXPECT_EQ(colorOf(model, kEsc, 24h), kRedLight);
    EXPECT_EQ(colorOf(model, kQ, 24h), kRedLight);
    EXPECT_EQ(model.nextChange(24h), 24h + kFrame);
}

TEST(NextChange, IsTheEdgeOfAFlashAFrameOfAPulseOrAnEnd) {
    KeyboardModel model;
    EXPECT_EQ(model.nextChange(0s), std::nullopt);
    model.flash(kEsc, kRed, 250ms, 100ms, 0s);
    EXPECT_EQ(model.nextChange(0s), 100ms);
    EXPECT_EQ(model.nextChange(100ms), 200ms);
    EXPECT_EQ(model.nextChange(220ms), 250ms);
    EXPECT_EQ(model.nextChange(250ms), std::nullopt);
    model.pulse(kQ, kRed, kBlue, 250ms, Repeat::Once, 0s);
    EXPECT_EQ(model.nextChange(50ms), 50ms + kFrame);
    EXPECT_EQ(model.nextChange(249ms), 250ms);
    // A pulse between equal colours does not move, so nobody need look before it ends.
    model.pulse(kQ, kRed, kRed, 1s, Repeat::Once, 0s);
    EXPECT_EQ(model.nextChange(300ms), 1s);
    model.pulse(kQ, kRed, kRed, 1s, Repeat::UntilStopped, 0s);
    EXPECT_EQ(model.nextChange(300ms), std::nullopt);
}

TEST(NextChange, NoColorChangesBeforeIt) {
    std::mt19937 random(7);
    const auto upTo = [&random](int limit) {
        return static_cast<int>(random() % (static_cast<unsigned>(limit) + 1U));
    };
    KeyboardModel model;
    for (const lighting::KeyRect& key : lighting::kKeyboardLayout) {
        const KeyName name = lighting::driverKeyName(key.code);
        const Time begin = std::chrono::milliseconds(upTo(300));
        const Duration duration = std::chrono::milliseconds(upTo(400));
        if (key.code % 3 == 0)
            model.pulse(name, kRed, kRed, duration, Repeat::Once, begin);
        else
            model.flash(name, {upTo(100), 50, 50}, duration, std::chrono::milliseconds(upTo(80)), begin);
    }
    model.stopEffectsOnKey(kEsc);
    Time time = 0s;
    int changes = 0;
    for (; time < 1s; ++changes) {
        const KeyColors colors = model.colorsAt(time);
        const Time next = model.nextChange(time).value_or(1s);
        ASSERT_GT(next, time);
        for (Time between = time; between < next; between += 500us)
            ASSERT_EQ(model.colorsAt(between), colors) << between.count();
        time = next;
    }
    EXPECT_GT(changes, 100);
}

} // namespace
} // namespace glimra::keyboards
