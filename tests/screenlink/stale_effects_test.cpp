#include "support/replay_text.h"

#include <gmock/gmock.h>

namespace glimra {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The bitmaps that are shown from a moment on.
std::vector<std::string> bitmapsAfter(double moment, const std::string& script) {
    std::vector<std::string> bitmaps;
    for (const auto& line : test::replay(script, {trace::TraceKind::Led}))
        if (line["t"].get<double>() >= moment && line["call"] == "LogiLedSetLightingFromBitmap")
            bitmaps.push_back(line["args"][0]);
    return bitmaps;
}

const std::string kGameLeavesInAFight = R"(
    start
    front "com.blizzard.worldofwarcraft"
    wait 0.5
    show "3"
    show "C"
    wait 1
    front "org.example.editor"
)";

const std::string kWanted = "default \"endStaleEffects\" true\n";

TEST(StaleEffects, EndOnceWhenTheGameIsGoneForHalfAMinuteAndLeaveTheProfile) {
    const std::string script = kWanted + kGameLeavesInAFight + "wait 60";
    const auto calls = test::ledCalls(script, 3.0);
    EXPECT_THAT(calls, Contains("31.8 StopEffectsOnKey 59"));
    EXPECT_THAT(calls, Contains("31.8 SetLightingFromBitmap").Times(1)) << "the profile";
    EXPECT_THAT(test::ledCalls(script, 33.0), IsEmpty());
    const auto state = test::stateAfter(script);
    EXPECT_EQ(state["combatAnimationPlaying"], false);
    EXPECT_EQ(state["activeColorProfile"], 3);
    EXPECT_THAT(test::replayText(script, {trace::TraceKind::Log}),
                Contains(HasSubstr("game is gone")).Times(1));

    // Where it is switched, profile 2 shows.
    const std::string switched =
        "default-color \"colorEColor2\" 1 0 0\ndefault \"autoToggleProfile\" true\n" + script;
    EXPECT_THAT(bitmapsAfter(3.0, switched), ElementsAre(test::dumped(switched + "\ndump bitmap 2")));
    EXPECT_EQ(test::stateAfter(switched)["activeColorProfile"], 3);
    const std::string inOneColor = "default \"singleColorMode\" true\n" + script;
    EXPECT_THAT(bitmapsAfter(3.0, inOneColor), IsEmpty());
    EXPECT_EQ(test::ledCalls(inOneColor, 3.0).back(), "31.8 SetLighting 0 100 100");
}

TEST(StaleEffects, EndAlsoWhereNoBitmapReachesAndWithTheirFlags) {
    constexpr const char* kLogo = "StopEffectsOnKey 1048561";
    EXPECT_THAT(test::ledCalls(kWanted + kGameLeavesInAFight + "wait 60", 3.0), Contains(HasSubstr(kLogo)));
    // The reset leaves the logo pulsing.
    EXPECT_THAT(test::ledCalls(kWanted + kGameLeavesInAFight + "action \"resetClicked:\"\nwait 60", 3.0),
                Contains(HasSubstr(kLogo)));
    EXPECT_THAT(test::ledCalls(kWanted + "start\nwait 1\nshow \"D\"\nwait 60", 3.0),
                Contains(HasSubstr("StopEffectsOnKey 65527")))
        << "G7";
    EXPECT_EQ(test::stateAfter(kWanted + "start\nwait 1\nshow \"I\"\nwait 60")["whisperLightActive"], false);
}

TEST(StaleEffects, EndAlsoWhatTheyHeldBackAndLetAPlayersWishThrough) {
    // The fight holds both back: death, and the profile that is asked for afterwards.
    const std::string script = kWanted + kGameLeavesInAFight + "show \"D\"\ntoken \"5\"\nwait 60";
    const auto state = test::stateAfter(script);
    EXPECT_EQ(state["activeColorProfile"], 5);
    EXPECT_EQ(state["deadAnimationPlaying"], false);
    EXPECT_THAT(test::replayText(script, {trace::TraceKind::Log}),
                Contains(HasSubstr("game is gone")).Times(1));
}

TEST(StaleEffects, EndUnderTheOpenProgrammerAndShowWhatItHolds) {
    const std::string script = kWanted + "start\nwait 0.5\nshow \"3\"\naction \"setColorsBtn:\"\nwait 0.1\n"
                                         "action \"mouseDown:\" 20 130\nshow \"D\"\nwait 60\ndump state";
    const auto state = test::stateAfter(script);
    EXPECT_EQ(state["activeColorProfile"], 3);
    EXPECT_EQ(state["profileTouched"], true);
    const auto calls = test::ledCalls(script, 3.0);
    EXPECT_THAT(calls, Contains(HasSubstr("SetLightingForKeyWithKeyName")).Times(11 + 115));
    EXPECT_THAT(calls.back(), HasSubstr("SetLightingForKeyWithKeyName")) << "the canvas comes last";
}

TEST(StaleEffects, StayWhileThereIsASignOfTheGame) {
    for (const std::string& script : {
             kGameLeavesInAFight + "wait 60",
             kWanted + kGameLeavesInAFight + "front \"com.blizzard.worldofwarcraft\"\nwait 60",
             kWanted + kGameLeavesInAFight + "wait 20\nshow \"w\"\nwait 25",
             kWanted + kGameLeavesInAFight + "wait 29",
         })
        EXPECT_EQ(test::stateAfter(script)["combatAnimationPlaying"], true) << script;
    EXPECT_THAT(test::ledCalls(kWanted + "start\nwait 60", 1.0), IsEmpty()) << "nothing to end";
}

} // namespace
} // namespace glimra
