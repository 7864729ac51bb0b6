#include "support/replay_text.h"

#include <gmock/gmock.h>

namespace glimra {
namespace {

using nlohmann::ordered_json;
using trace::TraceKind;

/// The dumps of a script, in its order; it starts the application itself.
std::vector<ordered_json> dumps(const std::string& script) {
    std::vector<ordered_json> values;
    for (const auto& line : test::replay(script, {TraceKind::Dump}))
        values.push_back(line["value"]);
    return values;
}

TEST(ColorProgrammer, EditsLiveOnTheCanvasUntilTheyAreSaved) {
    const auto dump = dumps(R"(
        start
        action "setColorsBtn:"
        wait 0
        action "paintingColorPicker:" 12
        action "mouseDown:" 50 235
        action "colorWellDropped:" 99 1 0 0
        wait 0
        dump state
        action "colorCancel:"
        dump state
        dump defaults
        action "setColorsMI:"
        wait 0
        action "mouseDragged:" 50 235
        action "colorOK:"
        dump state
        dump defaults
    )");
    EXPECT_EQ(dump[0]["canvas"]["keysToColors"][1], 12);
    EXPECT_EQ(dump[0]["canvas"]["keyColorSet"][1], ordered_json::parse("[1.0, 0.0, 0.0]"));
    EXPECT_EQ(dump[0]["keyToColorMap"][1], 5);
    EXPECT_EQ(dump[0]["profileTouched"], true);
    EXPECT_EQ(dump[1]["profileTouched"], false);
    EXPECT_FALSE(dump[2].contains("savedKeyToColorMap1"));
    EXPECT_EQ(dump[3]["profileTouched"], false);
    EXPECT_EQ(dump[4]["savedKeyToColorMap1"][1], 12);
    EXPECT_EQ(dump[4]["blinkTimePref"], 1.0);
}

TEST(ColorProgrammer, SwitchingProfileAsksAboutUnsavedEdits) {
    const std::string edit = R"(
        start
        action "setColorsBtn:"
        wait 0
        action "colorWellDropped:" 1 1 0 0
    )";
    const std::string end = "action \"profileSelectPopup:\" 2\ndump state\ndump defaults\ndump controls\n";

    const auto stay = dumps(edit + "answer 3\n" + end);
    EXPECT_EQ(stay[0]["activeColorProfile"], 1);
    EXPECT_EQ(stay[0]["profileTouched"], true);
    EXPECT_EQ(stay[0]["canvas"]["keyColorSet"][4], ordered_json::parse("[1.0, 0.0, 0.0]"));
    EXPECT_EQ(stay[2]["currentProfilePopup"]["selected"], 0);

    const auto save = dumps(edit + "answer 1\n" + end);
    EXPECT_EQ(save[0]["activeColorProfile"], 3);
    EXPECT_EQ(save[0]["profileTouched"], false);
    EXPECT_EQ(save[1]["colorAColor1"], ordered_json::parse("[1.0, 0.0, 0.0]"));

    const auto discard = dumps(edit + "answer 2\n" + end);
    EXPECT_EQ(discard[0]["activeColorProfile"], 3);
    EXPECT_FALSE(discard[1].contains("colorAColor1"));

    const auto same = dumps(edit + "answer 2\naction \"profileSelectPopup:\" 0\ndump state\n");
    EXPECT_EQ(same[0]["profileTouched"], true);
    const auto separator =
        dumps(edit + "answer 2\naction \"profileSelectPopup:\" 9\ndump state\ndump controls\n");
    EXPECT_EQ(separator[0]["activeColorProfile"], 1);
    EXPECT_EQ(separator[1]["currentProfilePopup"]["selected"], 0);
}

TEST(ColorProgrammer, CopiesAProfileWithItsCooldownFlag) {
    const auto dump = dumps(R"(
        default "useActionBarCooldowns9" true
        default-color "colorBColor9" 0 0 1
        start
        action "setColorsBtn:"
        wait 0
        action "profileSelectPopup:" 8
        answer 1
        action "profileSelectPopup:" 10
        dump state
        dump defaults
        answer 1 fromProfileMenu=0 toProfileMenu=4
        action "profileSelectPopup:" 10
        dump state
        answer 0 toProfileMenu=0 fromProfileMenu=0
        action "profileSelectPopup:" 10
        dump controls
    )");
    EXPECT_EQ(dump[0]["activeColorProfile"], 1); // 9 goes to 1 unless another is chosen
    EXPECT_EQ(dump[1]["colorBColor1"], ordered_json::parse("[0.0, 0.0, 1.0]"));
    EXPECT_EQ(dump[1]["useActionBarCooldowns1"], true);
    EXPECT_EQ(dump[2]["activeColorProfile"], 5);
    EXPECT_EQ(dump[2]["useSpellCooldowns"][5], true);
    EXPECT_EQ(dump[3]["currentProfilePopup"]["selected"], 4);
    EXPECT_EQ(dump[3]["copyProfileCopyBtn"]["enabled"], false);
}

TEST(ColorProgrammer, SingleColourModeTurnsTheCooldownsOff) {
    const auto dump = dumps(R"(
        default "useActionBarCooldowns1" true
        start
        action "setColorsBtn:"
        wait 0
        action "singleColorModeCheck:" on
        dump state
        dump controls
        action "singleColorModeCheck:" off
        dump state
        dump controls
        dump defaults
    )");
    EXPECT_EQ(dump[0]["useSingleColorMode"], true);
    EXPECT_EQ(dump[0]["singleColorFlag"], true);
    EXPECT_EQ(dump[0]["useSpellCooldowns"][1], false);
    EXPECT_EQ(dump[1]["actionBarEffectCheckbox"]["enabled"], false);
    EXPECT_EQ(dump[1]["cooldownPreviewBtn"]["enabled"], false);
    EXPECT_EQ(dump[2]["singleColorFlag"], false);
    EXPECT_EQ(dump[3]["actionBarEffectCheckbox"]["enabled"], true);
    EXPECT_EQ(dump[3]["actionBarEffectCheckbox"]["on"], false);
    EXPECT_EQ(dump[4]["useActionBarCooldowns1"], false);
    EXPECT_EQ(dump[4]["singleColorMode"], false);
}

TEST(Launcher, NamesStayNamesAndAutorunIsRemembered) {
    const auto lines = test::replay(R"(
        start
        option-key down
        answer 0 WoWAppNameField="Quote\" and \\slash" BNAppNameField=""
        action "launchWowMI:"
        option-key up
        action "launchWoWBtnClicked:"
        action "launchBNetMI:"
        action "autorunWowMI:"
        action "autorunNoneMI:"
        dump defaults
    )",
                                    {TraceKind::Process, TraceKind::Alert, TraceKind::Dump});
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[0]["args"][0], R"(-e tell application "Quote\" and \\slash" to activate)");
    EXPECT_EQ(lines[1]["args"][0], R"(-e tell application "" to activate)");
    EXPECT_EQ(lines[2]["text"], "Each time Glimra opens, it will automatically launch\nQuote\" and \\slash");
    EXPECT_EQ(lines[3]["text"], "No app will automatically launch.");
    EXPECT_EQ(lines[4]["value"]["AutorunMenuName"], "None");
    EXPECT_EQ(lines[4]["value"]["AutorunName"], "");
    EXPECT_EQ(lines[4]["value"]["WowAppName"], "Quote\" and \\slash");

    const auto started = test::replay(R"(
        default "AutorunName" "Battle.net"
        default "AutorunMenuName" "Battle.net"
        start
        dump controls
    )",
                                      {TraceKind::Process, TraceKind::Dump});
    EXPECT_EQ(started[0]["args"][0], R"(-e tell application "Battle.net" to activate)");
    EXPECT_EQ(started[1]["value"]["autorunBNetMI"]["on"], true);
    EXPECT_EQ(started[1]["value"]["autorunNoneMI"]["on"], false);
}

} // namespace
} // namespace glimra
