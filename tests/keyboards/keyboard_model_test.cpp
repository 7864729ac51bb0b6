#include "keyboards/model/keyboard_model.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace glimra::keyboards {
namespace {

using namespace platform;
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
    model.perform(FlashSingleKey{kEsc, kBlue, 0, 0}, 0s);
    for (const LedCall& call :
         std::initializer_list<LedCall>{SetTargetDevice{3}, SetLighting{kRed}, StopEffects{}})
        EXPECT_TRUE(model.perform(call, 0s));
    EXPECT_EQ(colorOf(model, kQ), Rgb{});
    EXPECT_EQ(colorOf(model, kEsc), kBlueLight);
    model.perform(SetTargetDevice{4}, 0s);
    model.perform(StopEffects{}, 0s);
    EXPECT_EQ(colorOf(model, kEsc), Rgb{});
}

TEST(Effects, TheShortestAndLongestTimesThatCanBeGivenDoNoHarm) {
    constexpr int kLongest = std::numeric_limits<int>::max();
    KeyboardModel model;
    model.perform(PulseSingleKey{kEsc, kRed, kBlue, kLongest, false}, 10s);
    model.perform(FlashSingleKey{kQ, kRed, kLongest, kLongest}, 10s);
    EXPECT_EQ(colorOf(model, kQ, 24h), kRedLight);
    const Time next = model.nextChange(24h).value();
    EXPECT_GT(next, 24h);
    EXPECT_LT(next, 24h + 2 * kFrame);
    model.perform(PulseSingleKey{kEsc, kRed, kBlue, 0, true}, 10s);
    EXPECT_EQ(colorOf(model, kEsc, 11s), Rgb{});
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
        const int duration = upTo(400);
        if (key.code % 3 == 0)
            model.perform(PulseSingleKey{name, kRed, {upTo(100), 0, 50}, duration, false}, begin);
        else
            model.perform(FlashSingleKey{name, {upTo(100), 50, 50}, duration, upTo(80)}, begin);
    }
    model.perform(StopEffectsOnKey{kEsc}, 0s);
    Time time = 0s;
    int changes = 0;
    for (; time < 1s; ++changes) {
        const LightColors lights = model.lightsAt(time);
        const Time next = model.nextChange(time).value_or(1s);
        ASSERT_GT(next, time);
        for (Time between = time; between < next; between += 500us)
            ASSERT_EQ(model.lightsAt(between), lights) << between.count();
        time = next;
    }
    EXPECT_GT(changes, 100);
}

TEST(WholeBoard, ShowsTheColorOfMostKeysOrOfALargeEffect) {
    const auto whole = [](const KeyboardModel& model) { return model.lightsAt(5s)[kWholeBoard]; };
    KeyboardModel model;
    model.perform(platform::SetLighting{{0, 100, 0}}, {});
    for (std::size_t key = 0; key < 10; ++key) {
        const KeyName name = lighting::driverKeyName(lighting::keyBitmapOffsets[key].code);
        EXPECT_EQ(whole(model), (Rgb{0, 255, 0})) << key;
        model.perform(platform::FlashSingleKey{name, {100, 0, 0}, 0, 0}, {});
    }
    EXPECT_EQ(whole(model), (Rgb{255, 0, 0}));
}

} // namespace
} // namespace glimra::keyboards
