#include "events/effects.h"

#include "events/fake_keyboard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <utility>

namespace glimra::events {
namespace {

using namespace std::chrono_literals;
using lighting::LedBitmap;
using ::testing::ElementsAre;
using ::testing::SizeIs;

class EffectsTest : public ::testing::Test {
protected:
    EffectsTest() {
        for (std::size_t i = 0; i < profile.size(); ++i)
            profile[i] = i % 4 == 3 ? 255 : static_cast<std::uint8_t>(i / 4);
    }

    void play(char code, bool singleColorMode = false) {
        EXPECT_TRUE(effects.play(code, profile, singleColorMode));
    }

    /// A cell by the palette's letter; '.' as in the profile.
    char letter(const LedBitmap& bitmap, std::size_t cell) const {
        const auto* const bytes = bitmap.data() + cell * 4;
        if (std::equal(bytes, bytes + 4, profile.data() + cell * 4))
            return '.';
        for (const auto& [name, color] : palette)
            if (bytes[3] == 255 && Rgb{bytes[2], bytes[1], bytes[0]} == color)
                return name;
        return '?';
    }

    /// A row of a frame, a letter a cell. Row 1 has a key in every cell, at 6, 38, 72, 104, 137, 170, 203,
    /// 237, 270, 304, 336, 370, 403, 436, 512, 546, 579, 623, 656, 689 and 722.
    std::string row(std::size_t frame, std::size_t number = 1) const {
        std::string letters;
        for (std::size_t column = 0; column < 21; ++column)
            letters += letter(keyboard.frames.at(frame).bitmap, number * 21 + column);
        return letters;
    }

    /// The six rows of a frame, a letter for each; '#' where a row has several colours.
    std::string rows(std::size_t frame) const {
        std::string letters;
        for (std::size_t number = 0; number < 6; ++number) {
            const std::string cells = row(frame, number);
            letters += cells == std::string(21, cells[0]) ? cells[0] : '#';
        }
        return letters;
    }

    void expectProfileAt(platform::Time time) const {
        EXPECT_EQ(keyboard.frames.back().bitmap, profile);
        EXPECT_EQ(keyboard.frames.back().at, time);
    }

    test::FakeKeyboard keyboard;
    lighting::LightingState state;
    lighting::LightingOutput lighting{keyboard, keyboard, state};
    Effects effects{keyboard, keyboard, keyboard, lighting};
    LedBitmap profile{};
    std::map<char, Rgb> palette{{'W', {255, 255, 255}}, {'K', {0, 0, 0}}};
};

TEST_F(EffectsTest, RowSweepRunsDownWithATrailOnBothSides) {
    palette['t'] = {128, 128, 128};
    play('S');
    EXPECT_EQ(keyboard.calls.front(), "0 target 7");
    ASSERT_THAT(keyboard.frames, SizeIs(7));
    EXPECT_EQ(rows(0), "Wt....");
    EXPECT_EQ(rows(2), ".tWt..");
    EXPECT_EQ(rows(5), "....tW");
    EXPECT_EQ(keyboard.frames[5].at, 400ms);
    expectProfileAt(480ms);
}

TEST_F(EffectsTest, RowSweepUpBeginsWithTheTrailAndNeverLightsTheTopRow) {
    palette = {{'L', {255, 230, 0}}, {'t', {128, 118, 50}}, {'R', {255, 0, 0}}};
    play('g');
    ASSERT_THAT(keyboard.frames, SizeIs(7));
    EXPECT_EQ(rows(0), ".....t");
    EXPECT_EQ(rows(1), "....tL");
    EXPECT_EQ(rows(5), "tLt...");
    play('a');
    EXPECT_EQ(rows(7 + 5), "RRR...");
}

TEST_F(EffectsTest, SingleColourFormsEndOnTheirLastColour) {
    play('m', true);
    EXPECT_THAT(keyboard.calls,
                ElementsAre("0 target 7", "0 target 4", "0 all 0 0 0", "200 target 4", "200 all 79 31 0",
                            "300 target 4", "300 all 0 0 0", "400 target 4", "400 all 79 31 0"));
    EXPECT_EQ(keyboard.now(), 500ms);

    // Stripe run and rainbow leave the devices to the whole-keyboard colours.
    state.singleColorFlag = true;
    keyboard.calls.clear();
    play('T', true);
    EXPECT_THAT(keyboard.calls, SizeIs(12));
    EXPECT_EQ(keyboard.calls[0], "500 target 7");
    EXPECT_EQ(keyboard.calls[1], "500 all 80 80 80");
    EXPECT_EQ(keyboard.calls.back(), "1250 all 0 0 100");
    EXPECT_EQ(keyboard.now(), 1400ms);
    keyboard.calls.clear();
    play('J', true);
    EXPECT_THAT(keyboard.calls, SizeIs(12));
    EXPECT_EQ(keyboard.calls[3], "1550 all 100 50 0");
    EXPECT_EQ(keyboard.calls.back(), "2150 all 50 0 50");
    EXPECT_EQ(keyboard.now(), 2300ms);
    EXPECT_THAT(keyboard.frames, SizeIs(0));
}

TEST_F(EffectsTest, EdgeSequenceAFlowsToTheCentreAndTheProfileReturnsFromTheTop) {
    palette['C'] = {255, 25, 25};
    palette['Y'] = {255, 230, 0};
    play('A');
    ASSERT_THAT(keyboard.frames, SizeIs(26 + 6));
    EXPECT_EQ(row(0), "..........WWW........");
    EXPECT_EQ(row(4), "WWWWWWWWWWCCCWWWWWWWW");
    EXPECT_EQ(row(5), "WWWWWWWCCCYYYCCWWWWWW");
    EXPECT_EQ(rows(25 + 1)[0], '.');
    EXPECT_EQ(row(25 + 1).find('.'), std::string::npos);
    EXPECT_EQ(row(25 + 2), std::string(21, '.'));
    expectProfileAt(31 * 75ms);
    EXPECT_EQ(keyboard.now(), 32 * 75ms);
}

TEST_F(EffectsTest, EdgeSequencesFAndNFlowBackToTheEdges) {
    palette = {{'Y', {255, 220, 0}},
               {'C', {255, 25, 25}},
               {'s', {90, 148, 255}},
               {'m', {255, 168, 54}},
               {'W', {255, 255, 255}}};
    play('F');
    ASSERT_THAT(keyboard.frames, SizeIs(24 + 4 + 1));
    EXPECT_EQ(row(23), "YYYYYYYYYYYYYYYYYYYYY");
    EXPECT_EQ(row(24), "YYYYYYYYYYCCCYYYYYYYY");
    EXPECT_EQ(row(25), "YYYYYYYCCCCCCCCYYYYYY");
    EXPECT_EQ(row(27), "CCCCCCCCCCCCCCCCCCCCC");
    expectProfileAt(28 * 65ms);
    play('n');
    ASSERT_THAT(keyboard.frames, SizeIs(29 + 15 + 4 + 1));
    EXPECT_EQ(row(29), "..........WWW........");
    EXPECT_EQ(row(29 + 14), "sssssssmmmmmmmmssssss");
    EXPECT_EQ(row(29 + 15), "sssmmmmmmmWWWmmmmssss");
    EXPECT_EQ(row(29 + 17), "mmmWWWWWWWWWWWWWWmmmm");
    expectProfileAt(28 * 65ms + 19 * 65ms);
}

TEST_F(EffectsTest, EdgeSequenceInOneColourShowsTheCentre) {
    play('n', true);
    EXPECT_THAT(keyboard.calls, SizeIs(1 + 15 * 2));
    EXPECT_EQ(keyboard.calls[2], "0 all 100 100 100");
    EXPECT_EQ(keyboard.calls[4], "65 all 35 58 100");
    EXPECT_EQ(keyboard.calls.back(), "910 all 100 65 21");
    EXPECT_EQ(keyboard.now(), 975ms);
}

TEST_F(EffectsTest, StripesEnterAtTheLeftAndLeaveAtTheRight) {
    palette['B'] = {0, 0, 255};
    play('T');
    ASSERT_THAT(keyboard.frames, SizeIs(19 + 1));
    EXPECT_EQ(row(0), "BBB..................");
    EXPECT_EQ(row(1), "WWBBB................");
    EXPECT_EQ(row(9), "WWBBB....WWBB...WWBBB");
    EXPECT_EQ(row(18), "..................WWW");
    expectProfileAt(19 * 75ms);
}

TEST_F(EffectsTest, WhiteFlashEndsBlackOnAllDevices) {
    play('f');
    ASSERT_THAT(keyboard.calls, SizeIs(11));
    EXPECT_EQ(keyboard.calls[3], "200 all 100 100 100");
    EXPECT_EQ(keyboard.calls[9], "500 all 0 0 0");
    EXPECT_EQ(keyboard.calls[10], "600 target 7");
}

TEST_F(EffectsTest, EdgeWipeLeavesItsColourBehindAndTheProfileFollows) {
    palette = {{'C', {0, 255, 255}}, {'b', {110, 202, 202}}};
    play('L');
    ASSERT_THAT(keyboard.frames, SizeIs(6 + 5 + 1));
    EXPECT_EQ(row(0), "bbbbCCCC.............");
    EXPECT_EQ(row(4), "bbbbbbbbbbbbbbbbbCCCC");
    EXPECT_EQ(row(5), "bbbbbbbbbbbbbbbbbbbbb");
    EXPECT_EQ(row(6), "....bbbbbbbbbbbbbbbbb");
    EXPECT_EQ(row(10), ".................bbbb");
    expectProfileAt(11 * 75ms);
    play('N', true);
    EXPECT_EQ(keyboard.calls.back(), "1165 all 90 80 60");
}

TEST_F(EffectsTest, WaveRunsDownThroughAlternateCells) {
    palette = {{'C', {0, 255, 255}}};
    play('h');
    ASSERT_THAT(keyboard.frames, SizeIs(15 + 1));
    EXPECT_EQ(row(0, 0), "C.C.C.C.C.C.C.C.C.C..");
    EXPECT_EQ(rows(0).substr(1), ".....");
    EXPECT_EQ(row(1, 1), ".C.C.C.C.C.C.C.C.C.C.");
    EXPECT_EQ(rows(9), "######");
    EXPECT_EQ(rows(10), ".#####");
    EXPECT_EQ(rows(14), ".....#");
    expectProfileAt(15 * 75ms);
    EXPECT_EQ(keyboard.calls.at(keyboard.calls.size() - 2), "1125 target 7");

    keyboard.calls.clear();
    play('h', true);
    EXPECT_EQ(keyboard.calls[2], "1125 all 0 24 24");
    EXPECT_EQ(keyboard.calls[2 + 6 * 2], "1575 all 0 97 97");
    EXPECT_EQ(keyboard.calls[2 + 14 * 2], "2175 all 0 0 0");
    EXPECT_EQ(keyboard.calls[31], "2250 target 7");
    expectProfileAt(2250ms);
}

TEST_F(EffectsTest, RainbowRollsDownAndOff) {
    palette = {{'r', {255, 0, 0}}, {'o', {255, 80, 0}}, {'y', {255, 220, 0}},
               {'g', {0, 255, 0}}, {'b', {0, 90, 255}}, {'v', {128, 0, 255}}};
    play('J');
    ASSERT_THAT(keyboard.frames, SizeIs(11 + 1));
    EXPECT_EQ(rows(0), "r.....");
    EXPECT_EQ(rows(5), "roygbv");
    EXPECT_EQ(rows(6), ".oygbv");
    EXPECT_EQ(rows(10), ".....v");
    expectProfileAt(11 * 75ms);
}

TEST_F(EffectsTest, GhostFadesFromTheRightToOnlyEscAndReturnsFromTheLeft) {
    play('W', true);
    ASSERT_THAT(keyboard.frames, SizeIs(7));
    EXPECT_EQ(row(0), "..................KKK");
    EXPECT_EQ(row(6), "...KKKKKKKKKKKKKKKKKK");
    EXPECT_EQ(keyboard.calls[keyboard.calls.size() - 2], "420 all 0 0 0");
    EXPECT_EQ(keyboard.calls.back(), "420 key 1 50 100 50");
    play('V', true);
    ASSERT_THAT(keyboard.frames, SizeIs(14));
    EXPECT_EQ(row(7), row(6));
    EXPECT_EQ(row(13), row(0));
    EXPECT_EQ(keyboard.calls.back(), "780 frame");
    EXPECT_EQ(keyboard.now(), 840ms);
}

TEST_F(EffectsTest, FramedFlashShowsABlockInWhite) {
    palette['R'] = {255, 0, 0};
    play('H');
    EXPECT_THAT(keyboard.calls, ElementsAre("0 target 4", "0 all 100 0 0", "0 target 7", "0 frame"));
    EXPECT_EQ(rows(0), "WW###W");
    EXPECT_EQ(row(0, 2), "WWWRRRRRRRRRRRRRRRWWW");
    EXPECT_EQ(keyboard.now(), 1250ms);
}

TEST_F(EffectsTest, CentreRippleWidensOnPerKeyDevices) {
    palette['i'] = {200, 230, 255};
    play('B');
    ASSERT_THAT(keyboard.frames, SizeIs(4 + 1));
    EXPECT_EQ(row(0), "........iiiiii.......");
    EXPECT_EQ(row(3), "iii...............iii");
    expectProfileAt(260ms);
    EXPECT_EQ(keyboard.calls.front(), "0 target 4");
    EXPECT_EQ(keyboard.calls.back(), "260 target 7");
}

TEST_F(EffectsTest, ShadowGlowPulsesEachRowAtItsOwnPace) {
    keyboard.nextRandom = 797;
    effects.shadowGlow({137 / 360.0, 0.51, 0.73});
    ASSERT_THAT(keyboard.calls, SizeIs(4 + 104 + 1));
    EXPECT_THAT(std::vector(keyboard.calls.begin(), keyboard.calls.begin() + 5),
                ElementsAre("0 target 7", "0 target 4", "0 all 35 73 46", "0 target 4",
                            "0 pulse 1 21 43 27 49 100 63 1597 1"));
    EXPECT_EQ(keyboard.calls[4 + 15], "0 pulse 325 21 43 27 49 100 63 1597 1");
    EXPECT_EQ(keyboard.calls[4 + 16], "0 pulse 41 21 43 27 49 100 63 1598 1");
    EXPECT_EQ(keyboard.calls[4 + 103], "0 pulse 83 21 43 27 49 100 63 802 1");
    EXPECT_EQ(keyboard.calls.back(), "0 target 7");
    // Darker than black there is nothing.
    effects.shadowGlow({0.0, 0.0, 0.2});
    EXPECT_EQ(keyboard.calls[109 + 4], "0 pulse 1 0 0 0 50 50 50 803 1");
}

TEST_F(EffectsTest, StopAllKeyEffectsStopsEachKeyOfTheBitmapOnce) {
    effects.stopAllKeyEffects(false);
    EXPECT_EQ(keyboard.calls[0], "0 target 7");
    EXPECT_EQ(keyboard.calls[1], "0 stop 1");
    EXPECT_EQ(std::set(keyboard.calls.begin(), keyboard.calls.end()).size(), 105U);
    EXPECT_THAT(keyboard.calls, SizeIs(105));
    effects.stopAllKeyEffects(true);
    EXPECT_EQ(keyboard.calls[105 + 1], "0 stop all");
    EXPECT_THAT(keyboard.calls, SizeIs(105 + 106));
}

TEST_F(EffectsTest, TerminationInsideAWaitShowsNothingMore) {
    for (const Animation& animation : animations())
        for (const bool singleColorMode : {false, true}) {
            test::FakeKeyboard dying;
            std::size_t callsBefore = 0;
            dying.duringWait = [&] {
                callsBefore = dying.calls.size();
                dying.terminate();
            };
            lighting::LightingOutput output{dying, dying, state};
            EXPECT_FALSE(Effects(dying, dying, dying, output).play(animation.code, profile, singleColorMode));
            EXPECT_EQ(dying.calls.size(), callsBefore) << animation.code;
        }
}

TEST_F(EffectsTest, WaitsCountFromTheirOwnStartAndTheProfileMayChangeMeanwhile) {
    const LedBitmap atStart = profile;
    bool nested = false;
    keyboard.duringWait = [&] {
        if (std::exchange(nested, true))
            return;
        profile.fill(9);
        EXPECT_TRUE(effects.play('B', lighting::blankBitmap(), false));
    };
    EXPECT_TRUE(effects.play('V', profile, false));
    // The ripple outlasts the wait that it began in, and the animation around it goes on unharmed.
    ASSERT_THAT(keyboard.frames, SizeIs(7 + 5));
    EXPECT_EQ(keyboard.frames[6].at, 260ms);
    EXPECT_EQ(keyboard.frames[7].at, 320ms);
    const auto end = keyboard.frames.back().bitmap.begin();
    EXPECT_TRUE(std::equal(end, end + 40, atStart.begin()));
}

} // namespace
} // namespace glimra::events
