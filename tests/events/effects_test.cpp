#include "events/effects.h"

#include "support/fake_driver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <utility>

namespace glimra::events {
namespace {

using lighting::LedBitmap;
using Calls = std::vector<std::string>;

/// A clock whose waits stand among the driver's calls: "wait 75", in milliseconds.
class FakeRunLoop final : public platform::RunLoop {
public:
    explicit FakeRunLoop(tests::FakeDriver& driver) : m_driver(driver) {}

    /// What the next wait serves; then nothing is left to serve.
    std::function<void()> toServe;

    platform::Time now() const override { return m_now; }
    std::string dateAndTime(platform::Time) const override { return {}; }
    bool runUntil(platform::Time deadline) override {
        const auto wait = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - m_now);
        m_driver.calls.push_back("wait " + std::to_string(wait.count()));
        if (toServe)
            std::exchange(toServe, nullptr)();
        m_now = std::max(m_now, deadline);
        return !m_terminated;
    }
    void terminate() override { m_terminated = true; }
    bool isTerminated() const override { return m_terminated; }
    platform::TimerId repeat(platform::Duration, std::function<void()>) override { return 0; }
    platform::TimerId after(platform::Duration, std::function<void()>) override { return 0; }
    void cancel(platform::TimerId) override {}
    void post(std::function<void()>) override {}

private:
    tests::FakeDriver& m_driver;
    platform::Time m_now{0};
    bool m_terminated = false;
};

/// One letter for each colour that the tests look for.
const std::map<char, Rgb> kPalette{{'W', {255, 255, 255}}, {'K', {0, 0, 0}},      {'t', {128, 128, 128}},
                                   {'L', {255, 230, 0}},   {'l', {128, 118, 50}}, {'R', {255, 0, 0}},
                                   {'C', {255, 25, 25}},   {'Y', {255, 220, 0}},  {'s', {90, 148, 255}},
                                   {'m', {255, 168, 54}},  {'B', {0, 0, 255}},    {'c', {0, 255, 255}},
                                   {'b', {110, 202, 202}}, {'o', {255, 80, 0}},   {'g', {0, 255, 0}},
                                   {'u', {0, 90, 255}},    {'v', {128, 0, 255}},  {'i', {200, 230, 255}}};

class EffectsTest : public ::testing::Test {
protected:
    EffectsTest() {
        for (std::size_t i = 0; i < profile.size(); ++i)
            profile[i] = i % 4 == 3 ? 255 : static_cast<std::uint8_t>(i / 4 + 3);
    }

    /// A cell of a frame by its palette letter, '.' where it is as in the profile.
    char cell(std::size_t frame, std::size_t row, std::size_t column) const {
        const std::size_t offset = (row * 21 + column) * 4;
        const auto* const bytes = driver.bitmaps.at(frame).data() + offset;
        if (std::equal(bytes, bytes + 4, profile.data() + offset))
            return '.';
        for (const auto& [letter, color] : kPalette)
            if (bytes[3] == 255 && Rgb{bytes[2], bytes[1], bytes[0]} == color)
                return letter;
        return '?';
    }

    std::string row(std::size_t frame, std::size_t number) const {
        std::string letters;
        for (std::size_t column = 0; column < 21; ++column)
            letters += cell(frame, number, column);
        return letters;
    }

    /// A letter for each of the six rows, '#' for a row of several colours.
    std::string rows(std::size_t frame) const {
        std::string letters;
        for (std::size_t number = 0; number < 6; ++number) {
            const std::string cells = row(frame, number);
            letters += cells == std::string(21, cells[0]) ? cells[0] : '#';
        }
        return letters;
    }

    tests::FakeDriver driver;
    FakeRunLoop runLoop{driver};
    tests::FixedRandom random;
    lighting::LightingState state;
    lighting::LightingOutput lighting{driver, random, state};
    Effects effects{runLoop, driver, random, lighting};
    LedBitmap profile{};
};

/// Frames and waits in turn.
Calls frames(int count, int wait) {
    Calls calls;
    for (int i = 0; i < count; ++i)
        calls.insert(calls.end(), {"SetLightingFromBitmap", "wait " + std::to_string(wait)});
    return calls;
}

/// Colours of all keys, each with its wait.
Calls colors(std::initializer_list<std::pair<const char*, int>> list) {
    Calls calls;
    for (const auto& [percentages, wait] : list)
        calls.insert(calls.end(), {"SetTargetDevice 4", std::string("SetLighting ") + percentages,
                                   "wait " + std::to_string(wait)});
    return calls;
}

Calls operator+(Calls calls, const Calls& more) {
    calls.insert(calls.end(), more.begin(), more.end());
    return calls;
}

const Calls kAllDevices{"SetTargetDevice 7"};
const Calls kFrame{"SetLightingFromBitmap"};

struct Look {
    std::size_t frame;
    /// Six letters are the six rows. 21 letters are row 1, which has a key in every cell: at 6, 38, 72, 104,
    /// 137, 170, 203, 237, 270, 304, 336, 370, 403, 436, 512, 546, 579, 623, 656, 689 and 722.
    std::string letters;
};

struct Show {
    char code;
    Calls calls;
    std::vector<Look> looks;
};

const Show kShows[]{
    {'S', kAllDevices + frames(6, 80) + kFrame, {{0, "Wt...."}, {2, ".tWt.."}, {5, "....tW"}, {6, "......"}}},
    {'g', kAllDevices + frames(6, 80) + kFrame, {{0, ".....l"}, {1, "....lL"}, {5, "lLl..."}, {6, "......"}}},
    {'a', kAllDevices + frames(6, 80) + kFrame, {{0, ".....R"}, {5, "RRR..."}, {6, "......"}}},
    {'A',
     kAllDevices + frames(26 + 6, 75),
     {{0, "..........WWW........"},
      {4, "WWWWWWWWWWCCCWWWWWWWW"},
      {5, "WWWWWWWCCCLLLCCWWWWWW"},
      {26, "WWWLLLLWWWLLLWWLLWWWW"},
      {26, ".#####"},
      {31, "......"}}},
    {'F',
     kAllDevices + frames(24 + 4, 65) + kFrame,
     {{0, "..........CCC........"},
      {24, "YYYYYYYYYYCCCYYYYYYYY"},
      {25, "YYYYYYYCCCCCCCCYYYYYY"},
      {27, "CCCCCCCCCCCCCCCCCCCCC"},
      {28, "......"}}},
    {'n',
     kAllDevices + frames(15 + 4, 65) + kFrame,
     {{14, "sssssssmmmmmmmmssssss"},
      {15, "sssmmmmmmmWWWmmmmssss"},
      {17, "mmmWWWWWWWWWWWWWWmmmm"},
      {19, "......"}}},
    // The key at 72 lies on the border of two bands; the later paint has it.
    {'T',
     kAllDevices + frames(19, 75) + kFrame,
     {{0, "BBB.................."},
      {1, "WWBBB................"},
      {9, "WWBBB....WWBB...WWBBB"},
      {18, "..................WWW"},
      {19, "......"}}},
    {'L',
     kAllDevices + frames(6 + 5, 75) + kFrame,
     {{0, "bbbbcccc............."},
      {4, "bbbbbbbbbbbbbbbbbcccc"},
      {6, "....bbbbbbbbbbbbbbbbb"},
      {10, ".................bbbb"},
      {11, "......"}}},
    {'h',
     kAllDevices + frames(15, 75) + kAllDevices + kFrame,
     {{0, "#....."}, {1, ".c.c.c.c.c.c.c.c.c.c."}, {9, "######"}, {14, ".....#"}, {15, "......"}}},
    {'J',
     kAllDevices + frames(11, 75) + kFrame,
     {{0, "R....."}, {5, "RoYguv"}, {6, ".oYguv"}, {10, ".....v"}, {11, "......"}}},
    {'W',
     kAllDevices + frames(7, 60) +
         Calls{"SetTargetDevice 4", "SetLighting 0 0 0", "SetLightingForKeyWithKeyName 1 50 100 50"},
     {{0, "..................KKK"}, {6, "...KKKKKKKKKKKKKKKKKK"}}},
    {'V', kAllDevices + frames(7, 60), {{0, "...KKKKKKKKKKKKKKKKKK"}, {6, "..................KKK"}}},
    {'H', Calls{"SetTargetDevice 4", "SetLighting 100 0 0"} + kAllDevices + frames(1, 1250), {{0, "WW###W"}}},
    {'B',
     Calls{"SetTargetDevice 4"} + frames(4, 65) + kFrame + kAllDevices,
     {{0, "........iiiiii......."}, {3, "iii...............iii"}, {4, "......"}}},
};

TEST_F(EffectsTest, AnimationsRunOverTheProfile) {
    for (const Show& show : kShows) {
        SCOPED_TRACE(show.code);
        driver.bitmaps.clear();
        EXPECT_TRUE(effects.play(show.code, profile, false));
        EXPECT_EQ(driver.take(), show.calls);
        for (const Look& look : show.looks)
            EXPECT_EQ(look.letters.size() == 6 ? rows(look.frame) : row(look.frame, 1), look.letters)
                << "frame " << look.frame;
    }
    // Rows are painted in every cell, bands only where there is a key.
    EXPECT_TRUE(effects.play('r', profile, false));
    EXPECT_EQ(row(5, 3), "WWggggggggggggggggWWg");
}

TEST_F(EffectsTest, SingleColourModeShowsColoursOfAllKeysOnly) {
    const Calls stripe = colors({{"80 80 80", 150}, {"0 0 100", 150}});
    const std::map<char, Calls> expected{
        {'m', kAllDevices + colors({{"0 0 0", 200}, {"79 31 0", 100}, {"0 0 0", 100}, {"79 31 0", 100}})},
        {'T', stripe + stripe + stripe},
        {'N', kAllDevices + colors({{"50 40 20", 170}, {"70 60 40", 170}, {"90 80 60", 170}})},
        {'J', colors({{"100 0 0", 150},
                      {"100 50 0", 150},
                      {"100 100 0", 150},
                      {"0 100 0", 150},
                      {"0 100 100", 150},
                      {"50 0 50", 150}})},
        {'f',
         colors(
             {{"0 0 0", 200}, {"100 100 100", 100}, {"0 0 0", 100}, {"100 100 100", 100}, {"0 0 0", 100}}) +
             kAllDevices},
    };
    for (const auto& [code, calls] : expected) {
        EXPECT_TRUE(effects.play(code, profile, true));
        EXPECT_EQ(driver.take(), calls) << code;
    }

    // An edge sequence shows what its centre would show, and stays on the last colour.
    EXPECT_TRUE(effects.play('n', profile, true));
    const Calls sequence = driver.take();
    ASSERT_EQ(sequence.size(), 1U + 15 * 3);
    EXPECT_EQ(sequence[2 + 3], "SetLighting 35 58 100");
    EXPECT_EQ(sequence[2 + 14 * 3], "SetLighting 100 65 21");

    EXPECT_TRUE(effects.play('h', profile, true));
    const Calls wave = driver.take();
    ASSERT_EQ(wave.size(), 1U + 15 * 3 + 2);
    EXPECT_EQ(wave[2], "SetLighting 0 24 24");
    EXPECT_EQ(wave[2 + 6 * 3], "SetLighting 0 97 97");
    EXPECT_EQ(wave[2 + 14 * 3], "SetLighting 0 0 0");
    EXPECT_EQ(Calls(wave.end() - 2, wave.end()), kAllDevices + kFrame);
}

TEST_F(EffectsTest, ShadowGlowPulsesAroundTheColourAndTheRowsHaveTheirPeriods) {
    random.value = 799;
    effects.shadowGlow({137 / 360.0, 0.51, 0.73});
    const Calls calls = driver.take();
    ASSERT_EQ(calls.size(), 4U + 104 + 1);
    EXPECT_THAT(Calls(calls.begin(), calls.begin() + 5),
                ::testing::ElementsAre("SetTargetDevice 7", "SetTargetDevice 4", "SetLighting 35 73 46",
                                       "SetTargetDevice 4", "PulseSingleKey 1 21 43 27 49 100 63 1599 true"));
    EXPECT_EQ(calls.back(), "SetTargetDevice 7");
    // Nothing is darker than black.
    effects.shadowGlow({0.0, 0.0, 0.2});
    EXPECT_EQ(driver.calls[4], "PulseSingleKey 1 0 0 0 50 50 50 1599 true");
}

TEST_F(EffectsTest, StopAllKeyEffectsStopsEachKeyOfTheBitmap) {
    effects.stopAllKeyEffects(false);
    const Calls calls = driver.take();
    EXPECT_EQ(calls[0], "SetTargetDevice 7");
    EXPECT_EQ(calls[1], "StopEffectsOnKey 1");
    EXPECT_EQ(calls.back(), "StopEffectsOnKey 83");
    EXPECT_EQ(std::set(calls.begin(), calls.end()).size(), 1U + 104);
    effects.stopAllKeyEffects(true);
    EXPECT_EQ(driver.calls[1], "StopEffects");
    EXPECT_EQ(driver.calls.size(), calls.size() + 1);
}

TEST_F(EffectsTest, TerminationInsideAWaitShowsNothingMore) {
    runLoop.toServe = [this] { runLoop.terminate(); };
    EXPECT_FALSE(effects.play('W', profile, false));
    EXPECT_EQ(driver.calls, kAllDevices + frames(1, 60));
}

TEST_F(EffectsTest, AnotherAnimationAndANewProfileInsideAWaitLeaveTheFirstAsItWas) {
    LedBitmap stored = profile;
    runLoop.toServe = [&] {
        stored.fill(9);
        EXPECT_TRUE(effects.play('B', stored, false));
    };
    EXPECT_TRUE(effects.play('V', stored, false));
    // The ripple takes longer than the wait that it began in; the next one has its full length all the same.
    EXPECT_EQ(driver.calls, kAllDevices + frames(1, 60) + Calls{"SetTargetDevice 4"} + frames(4, 65) +
                                kFrame + kAllDevices + frames(6, 60));
    EXPECT_EQ(row(6, 1), "......KKKKKKKKKKKKKKK");
}

} // namespace
} // namespace glimra::events
