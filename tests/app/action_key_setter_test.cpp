#include "support/replay_text.h"

#include <gmock/gmock.h>

namespace glimra::app {
namespace {

using test::dumped;
using test::ledCalls;
using test::replayText;
using test::say;
using test::stateAfter;
using testing::ElementsAre;
using testing::IsEmpty;
using trace::TraceKind;

const std::string kStart = "start\n";
const std::string kOpen = "action \"openWindowToMapKeys:\"\n";
const std::string kOk = "action \"actionKeySetterOK:\"\n";
const std::string kCancel = "action \"actionKeySetterCanx:\"\n";

std::string choose(int number, const std::string& title) {
    return "action \"actionKeyMenuClick" + std::to_string(number) + ":\" \"" + title + "\"\n";
}

/// The key that goes on cooldown with the first slot of a code's range.
std::string firstKey(const std::string& script, const std::string& code) {
    const auto dimmed = stateAfter(script + say(code + "@"))["dimmedKeys"];
    return dimmed.size() == 1 ? dimmed.begin().key() : dimmed.dump();
}

TEST(ActionKeySetterTest, OpensWithEveryMenuOnItsKey) {
    const auto controls =
        dumped("default \"key605\" 87\ndefault \"key501\" 28\n" + kStart + kOpen + "dump controls");
    const auto title = [&](const char* menu) { return controls[menu]["title"].get<std::string>(); };
    EXPECT_EQ(controls["actionKeySetterWindow"]["visible"], true);
    EXPECT_EQ(title("menu101"), " 1");
    EXPECT_EQ(title("menu112"), "=");
    EXPECT_EQ(title("menu501"), "Enter \u00a9");
    EXPECT_EQ(title("menu506"), "  No Key");
    EXPECT_EQ(title("menu507"), ""); // not in use
    EXPECT_EQ(title("menu605"), "F11");
    EXPECT_EQ(title("menu612"), "F10");
    EXPECT_EQ(controls["menu506"]["selected"], 0);
    EXPECT_EQ(controls["menu101"]["selected"], 2); // behind no key and 0
    const auto copy = stateAfter(kStart + kOpen)["saveActionBarKeyMap"];
    EXPECT_EQ(copy.dump(), "[2,3,4,5,6,7,8,9,10,11,12,13,0,0,0,0,0,0,59,60,61,62,0,63,64,65,66,0,67,68]");
}

TEST(ActionKeySetterTest, AChoiceCountsAtOnce) {
    EXPECT_EQ(firstKey(kStart + kOpen + choose(107, " W"), "["), "17");
    EXPECT_EQ(firstKey(kStart + kOpen + choose(607, "Glimra Badge \u00a9"), "{"), "522");
    EXPECT_EQ(firstKey(kStart + kOpen + choose(501, "  No Key"), "}"), "{}"); // taken back by the next slot
    EXPECT_EQ(firstKey(kStart + kOpen + choose(101, "  No Key"), "`"), "0");
    EXPECT_EQ(firstKey(kStart + kOpen + choose(107, "W"), "["), "8"); // names no key
    EXPECT_EQ(firstKey(kStart + kOpen + choose(101, " W") + choose(102, " W"), "`"),
              "{}"); // one key, two slots
}

TEST(ActionKeySetterTest, OkKeepsAndCancelTakesBack) {
    const std::string edited =
        kStart + kOpen + choose(101, " Q") + choose(502, " E") + choose(612, "  No Key");
    const std::string defaults = "dump defaults";
    EXPECT_TRUE(dumped(edited + defaults).empty());
    const auto stored = dumped(edited + kOk + defaults);
    EXPECT_EQ(stored.size(), 30U);
    EXPECT_EQ(stored["key101"], 16);
    EXPECT_EQ(stored["key502"], 18);
    EXPECT_EQ(stored["key506"], 0);
    EXPECT_EQ(stored["key612"], 0);
    EXPECT_TRUE(dumped(edited + kCancel + defaults).empty());
    const auto back = dumped(edited + kCancel + kOpen + kOk + defaults);
    EXPECT_EQ(back["key101"], 2);
    EXPECT_EQ(back["key502"], 0);
    EXPECT_EQ(back["key612"], 68);
    EXPECT_EQ(dumped(edited + kOk + choose(101, " Z") + kOpen + choose(101, " X") + kCancel + kOk +
                     defaults)["key101"],
              44); // back to what it was when the window was filled last
    for (const std::string& button : {kOk, kCancel})
        EXPECT_FALSE(dumped(edited + button + "dump controls")["actionKeySetterWindow"]["visible"]);
    // Before the window was ever opened there is nothing to take back.
    EXPECT_EQ(firstKey(kStart + choose(107, " W") + kCancel, "["), "17");
}

/// Profile 1 with key W painted in colour D, not saved.
const std::string kEdited = kStart + "action \"setColorsMI:\"\nwait 0\naction \"paintingColorPicker:\" 4\n" +
                            "action \"mouseDown:\" 130 160\nwait 1\n";

/// Slot of W in memory, on the canvas and in the store (0 when nothing is stored); whether the canvas counts
/// as edited; which windows show.
std::string outcome(const std::string& script) {
    const auto state = stateAfter(script);
    const auto stored = dumped(script + "dump defaults");
    const auto controls = dumped(script + "dump controls");
    std::string text = state["keyToColorMap"][17].dump() + " " + state["canvas"]["keysToColors"][17].dump();
    text += " " + (stored.contains("savedKeyToColorMap1") ? stored["savedKeyToColorMap1"][17].dump() : "0");
    text += state["profileTouched"].get<bool>() ? " edited" : "";
    for (const char* window : {"profileChangeAlert", "colorProgrammerWindow", "actionKeySetterWindow"})
        text += controls[window]["visible"].get<bool>() ? " " + std::string(window) : "";
    return text;
}

TEST(UnsavedEditsTest, OpeningTheSetterAsksWhatBecomesOfThem) {
    EXPECT_EQ(outcome(kEdited), "6 7 0 edited colorProgrammerWindow");
    EXPECT_EQ(outcome(kEdited + "answer 1\n" + kOpen), "7 7 7 actionKeySetterWindow");
    EXPECT_EQ(outcome(kEdited + "answer 2\n" + kOpen), "6 6 0 actionKeySetterWindow");
    for (const char* cancel : {"answer 0\n", "answer 3\n", "answer -1\n", ""})
        EXPECT_EQ(outcome(kEdited + cancel + kOpen), "6 7 0 edited colorProgrammerWindow") << cancel;
}

TEST(UnsavedEditsTest, TheQuestionComesOnceAndOnlyForEdits) {
    EXPECT_THAT(replayText(kEdited + "answer 2\n" + kOpen + kOpen, {TraceKind::Modal}),
                ElementsAre(R"({"t":1,"kind":"modal","window":"profileChangeAlert","answer":2})"));
    EXPECT_THAT(replayText(kStart + kOpen, {TraceKind::Modal}), IsEmpty());
    // A click beside the keys is an edit as well.
    const std::string miss = kStart + "action \"setColorsMI:\"\nwait 0\naction \"mouseDown:\" 1 1\n" + kOpen;
    EXPECT_EQ(replayText(miss, {TraceKind::Modal}).size(), 1U);
    // Opening takes the profile's cooldown flag over, lights nothing and hides the programmer.
    EXPECT_TRUE(dumped("default \"useActionBarCooldowns1\" true\n" + kStart + kOpen +
                       "dump controls")["actionBarEffectCheckbox"]["on"]);
    EXPECT_THAT(ledCalls(kEdited + "answer 1\n" + kOpen + "wait 0.1", 0.5), IsEmpty());
}

} // namespace
} // namespace glimra::app
