#include "keyboards/model/keyboard_model.h"

#include "lighting/led_bitmap.h"

#include <gtest/gtest.h>

#include <random>

namespace glimra::keyboards {
namespace {

using namespace std::chrono_literals;

constexpr KeyName kEsc = 0x01;
constexpr KeyName kQ = 0x10;

constexpr Percentages kRed{100, 0, 0};
constexpr Percentages kBlue{0, 0, 100};
constexpr Rgb kRedLight{255, 0, 0};
constexpr Rgb kBlueLight{0, 0, 255};

Rgb colorOf(const KeyboardModel& model, KeyName key, Time time = 0s) {
    return model.colorsAt(time).at(keyIndex(key).value());
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

TEST(Effects, TheLongestTimesThatCanBeGivenDoNotOverflow) {
    KeyboardModel model;
    model.pulse(kEsc, kRed, kBlue, Duration::max(), Repeat::Once, 10s);
    model.flash(kQ, kRed, Duration::max(), Duration::max(), 10s);
    EXPECT_EQ(colorOf(model, kEsc, 24h), kRedLight);
    EXPECT_EQ(colorOf(model, kQ, 24h), kRedLight);
    EXPECT_EQ(model.nextChange(24h), 24h + kFrame);
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
