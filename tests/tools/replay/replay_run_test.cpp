#include "support/replay_text.h"

#include <gmock/gmock.h>

#include <set>

namespace glimra::tools {
namespace {

using test::replay;
using test::replayText;
using testing::AllOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using trace::TraceKind;

/// The moments at which the driver was called so.
std::vector<double> momentsOf(const std::string& call, const std::vector<nlohmann::ordered_json>& lines) {
    std::vector<double> moments;
    for (const auto& line : lines)
        if (line.value("call", "") == call)
            moments.push_back(line.at("t"));
    return moments;
}

std::set<double> combatStarts(const std::string& script) {
    const std::vector<double> moments = momentsOf("LogiLedPulseSingleKey", replay(script, {TraceKind::Led}));
    return {moments.begin(), moments.end()};
}

TEST(ReplayRunTest, EveningWithAFight) {
    const auto lines = replay(R"(
        start
        front "com.blizzard.worldofwarcraft"
        wait 2
        show "C"
        wait 1
        show "O"
        wait 1
        quit
        dump log
    )");
    EXPECT_THAT(momentsOf("LogiLedPulseSingleKey", lines), AllOf(SizeIs(18), testing::Each(2.4)));
    EXPECT_THAT(momentsOf("LogiLedStopEffectsOnKey", lines), AllOf(SizeIs(18), testing::Each(3.6)));
    // Every 14 ticks while the game is in front, and early after the fight.
    EXPECT_THAT(momentsOf("LogiLedSetLightingFromBitmap", lines), ElementsAre(0.2, 3.0, 3.6));
}

TEST(ReplayRunTest, EndsWithTheQuitLine) {
    const auto lines = replayText("start\nwait 1.01\nquit\nwait 5\ndump log");
    ASSERT_GE(lines.size(), 4U);
    EXPECT_THAT(std::vector(lines.end() - 4, lines.end()),
                ElementsAre(R"({"t":1.05,"kind":"activity","action":"end","reason":"Reading the screen"})",
                            R"({"t":1.05,"kind":"frame","action":"save","name":"windowPosition"})",
                            R"({"t":1.05,"kind":"led","call":"LogiLedShutdown","args":[]})",
                            R"({"t":1.05,"kind":"quit"})"));
    EXPECT_THAT(replayText("start\nwait 1", {TraceKind::Quit}), IsEmpty());
}

TEST(ReplayRunTest, QuitAtAGridPointTakesTheNextOne) {
    EXPECT_THAT(replayText("start\nwait 1\nquit", {TraceKind::Quit}),
                ElementsAre(R"({"t":1.05,"kind":"quit"})"));
}

TEST(ReplayRunTest, QuitRightAfterStartLetsTheReaderLookOnce) {
    const auto lines = replay("display none\nstart\nquit", {TraceKind::Log, TraceKind::Quit});
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2]["text"], "recordColors: No displays available.\n");
    EXPECT_EQ(lines[lines.size() - 2]["t"], 0);
    EXPECT_EQ(lines.back()["t"], 0.05);
}

TEST(ReplayRunTest, QuitEndsAnAnimationInItsWait) {
    // At 0.8 the message is dispatched before the reader, whose answer is served in the animation's first
    // wait.
    const auto lines = replayText("start\nwait 0.55\ntoken \"A\"\nwait 0.22\nquit");
    EXPECT_EQ(lines.back(), R"({"t":0.8,"kind":"quit"})");
    const auto frames = replay("start\nwait 0.55\ntoken \"A\"\nwait 0.22\nquit", {TraceKind::Led});
    EXPECT_THAT(momentsOf("LogiLedSetLightingFromBitmap", frames), ElementsAre(0.8));
}

TEST(ReplayRunTest, ClosingTheLastWindowEndsTheRunInTheNextWait) {
    const auto lines = replayText(R"(
        start
        action "windowShouldClose:" "mainWindow"
        dump bitmap 1
        wait 5
        dump bitmap 1
    )",
                                  {TraceKind::Window, TraceKind::Dump, TraceKind::Quit});
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[1], R"({"t":0,"kind":"window","window":"mainWindow","visible":false})");
    EXPECT_EQ(lines[3], R"({"t":0.05,"kind":"quit"})");
    // A quit meanwhile asks for nothing new.
    EXPECT_THAT(replayText("start\naction \"windowShouldClose:\" \"mainWindow\"\nquit", {TraceKind::Quit}),
                SizeIs(1));
}

TEST(ReplayRunTest, ModalSessionMakesItsSettingsAndSendsTheirActions) {
    const auto lines = replay(R"(
        start
        answer 0 fromProfileMenu=4 toProfileMenu=4
        action "profileSelectPopup:" 10
        action "profileSelectPopup:" 10
        answer 5 WoWAppNameField="My game"
        action "editGameNamesMI:"
        action "editGameNamesMI:"
        dump controls
        dump state
    )",
                              {TraceKind::Modal, TraceKind::Dump});
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[0]["window"], "copyProfileDialog");
    EXPECT_EQ(lines[2].dump(), R"({"t":0,"kind":"modal","window":"launchOptionWindow","answer":5})");
    EXPECT_EQ(lines[3]["answer"], 0); // nothing queued
    EXPECT_EQ(lines[5]["value"]["WowAppName"], "My game");
    const auto enabled = [](const std::string& answer) {
        const auto dumps = replay("start\n" + answer + "\naction \"profileSelectPopup:\" 10\ndump controls",
                                  {TraceKind::Dump});
        return dumps.at(0)["value"]["copyProfileCopyBtn"]["enabled"].get<bool>();
    };
    EXPECT_TRUE(enabled("answer 0 toProfileMenu=7"));
    EXPECT_FALSE(enabled("answer 0 fromProfileMenu=4 toProfileMenu=4"));
}

TEST(ReplayRunTest, CanvasIsDrawnOncePerMomentAndOnlyWhileItShows) {
    const auto drawings = [](const std::string& script) {
        const auto lines = replay("start\n" + script, {TraceKind::Led});
        const auto isDrawingOfEscape = [](const auto& line) {
            return line["call"] == "LogiLedSetLightingForKeyWithKeyName" && line["args"][0] == 1;
        };
        return std::ranges::count_if(lines, isDrawingOfEscape);
    };
    const std::string open = "action \"setColorsMI:\"\nwait 0\n";
    const std::string paint = "action \"mouseDown:\" 50 160\n";
    EXPECT_EQ(drawings("action \"setColorsMI:\""), 0);
    EXPECT_EQ(drawings(open), 1);
    EXPECT_EQ(drawings(open + open), 2);
    EXPECT_EQ(drawings(paint + "wait 0\n" + open), 1);
    EXPECT_EQ(drawings(open + paint + paint + "wait 0"), 2);
    EXPECT_EQ(drawings(open + paint + "action \"colorOK:\"\nwait 1"), 1);
}

TEST(ReplayRunTest, DisabledControlsSendNothing) {
    const auto flag = [](const std::string& script) {
        const auto lines = replay("start\n" + script + "\ndump state", {TraceKind::Dump});
        return lines.at(0)["value"]["useSpellCooldowns"][0].get<bool>();
    };
    EXPECT_TRUE(flag("action \"cooldownCheck:\" on"));
    EXPECT_FALSE(flag("action \"singleColorModeCheck:\" on\naction \"cooldownCheck:\" on"));
}

TEST(ReplayRunTest, StartsWhenTheScriptSaysSo) {
    // Both message timers and the reader have their grids from the start on.
    EXPECT_THAT(combatStarts("wait 0.03\nstart\ntoken \"C\"\nwait 0.19"), IsEmpty());
    EXPECT_THAT(combatStarts("wait 0.03\nstart\ntoken \"C\"\nwait 0.2"), ElementsAre(0.23));
}

TEST(ReplayRunTest, ReadsTheStripAtItsGeometry) {
    const std::string calibrated = "default \"scanWidth\" 80.0\ndefault \"scanOffset\" 2\nstart\n";
    const std::string shown = "show \"C\"\nwait 1";
    EXPECT_THAT(combatStarts(calibrated + shown), SizeIs(1));
    EXPECT_THAT(combatStarts(calibrated + "strip-geometry 2 80\n" + shown), SizeIs(1));
    EXPECT_THAT(combatStarts(calibrated + "strip-geometry 20 80\n" + shown), IsEmpty());
    EXPECT_THAT(combatStarts(calibrated + "display none\n" + shown), IsEmpty());
    EXPECT_THAT(combatStarts(calibrated + "sleep\n" + shown), IsEmpty());
    EXPECT_THAT(combatStarts(calibrated + "sleep\nwait 1\nwake\n" + shown), SizeIs(1));
}

TEST(ReplayRunTest, SamplesDevicePixels) {
    // Positions count pixels: with two in a point, the strip is read at half its calibrated width.
    const std::string scaled = "display 1920 1080 2\nstart\n";
    EXPECT_THAT(combatStarts(scaled + "strip-geometry 2 40\nshow \"C\"\nwait 1"), SizeIs(1));
    EXPECT_THAT(combatStarts(scaled + "strip-geometry 2 80\nshow \"C\"\nwait 1"), IsEmpty());
}

TEST(ReplayRunTest, StripPartlyBesideTheScreenIsNotRead) {
    const std::string script =
        "default \"scanWidth\" 80.0\ndefault \"scanOffset\" -3\nstrip-geometry -3 80\n";
    EXPECT_THAT(combatStarts(script + "start\nshow \"C\"\nwait 1"), IsEmpty());
    EXPECT_THAT(combatStarts("display 70 50 1\nstart\nshow \"C\"\nwait 1"), IsEmpty());
}

TEST(ReplayRunTest, PrefixIsTheColourOfTheConfirmFrame) {
    for (const char prefix : std::string("`[]{}")) {
        const std::string token = std::string(1, prefix) + "A";
        const auto lines = replay("start\nshow \"" + token + "\"\nwait 0\ndump state", {TraceKind::Dump});
        ASSERT_EQ(lines.size(), 1U);
        const auto& state = lines[0]["value"];
        EXPECT_EQ(state["messageQueue"].get<std::string>() + state["currentMessage"].get<std::string>(),
                  token);
    }
}

TEST(ReplayRunTest, DumpsNameWhatTheyShow) {
    const auto lines = replay(R"(
        default "text" "a"
        default-color "tint" 0.25 1 0
        default-data "raw" 00ff
        dump defaults
        dump bitmap 0
        start
        dump controls
    )",
                              {TraceKind::Dump});
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(
        lines[0].dump(),
        R"({"t":0,"kind":"dump","what":"defaults","value":{"raw":"00ff","text":"a","tint":[0.25,1.0,0.0]}})");
    EXPECT_EQ(lines[1]["what"], "bitmap 0");
    EXPECT_EQ(lines[1]["value"], std::string(1008, 'f'));
    EXPECT_EQ(lines[2]["value"]["mainWindow"].dump(), R"({"visible":true})");
    EXPECT_EQ(lines[2]["value"]["autorunWowMI"]["title"], "World of Warcraft");
    EXPECT_EQ(lines[2]["value"]["colorButtonGroup"]["selected"], 1);
}

TEST(ReplayRunTest, SameSeedSameRun) {
    const std::string script = "start\ntoken \"D\"\nwait 1";
    EXPECT_EQ(replayText(script), replayText(script));
}

} // namespace
} // namespace glimra::tools
