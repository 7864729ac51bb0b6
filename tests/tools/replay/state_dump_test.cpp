#include "support/replay_text.h"

#include <gmock/gmock.h>

namespace glimra::tools {
namespace {

using test::dumped;
using test::stateAfter;

TEST(StateDumpTest, ShowsTheDelegatesValuesUnderTheirNames) {
    const auto before = dumped("dump state");
    EXPECT_TRUE(before["myScanRect"].is_null()); // nothing has been loaded yet
    EXPECT_EQ(before["keyboardColorSet"][12].dump(), "[0.0,1.0,1.0]");
    EXPECT_EQ(before["canvas"].dump(), R"({"paintColor":4,"keyColorSet":[[0.0,0.0,0.0]],"keysToColors":[4],)"
                                       R"("usingActionbarCooldowns":false,"dimmedKeys":{}})");
    const auto state = stateAfter("start");
    std::vector<std::string> names;
    for (const auto& [name, value] : state.items())
        names.push_back(name);
    EXPECT_THAT(names,
                testing::UnorderedElementsAre(
                    "keyboardColorSet", "keyToColorMap", "activeColorProfile", "chatReturnColorProfile",
                    "profileTouched", "dimmedKeys", "scanWidth", "scanOffset", "myScanRect", "pixelOffsets",
                    "messageQueue", "currentMessage", "combatAnimationPlaying", "singleColorModeRedFlash",
                    "deadAnimationPlaying", "shadowAnimationPlaying", "whisperLightActive",
                    "suspendScreenReads", "keepTheScannerRunning", "debugMode", "updatePause",
                    "useSpellCooldowns", "blinkTime", "WoWisInTheForeground", "WowAppName",
                    "WowClassicAppName", "BNAppName", "autoToggleProfile2", "combatChatWarning",
                    "confirmCalibrate", "useSingleColorMode", "supressCooldownBlinkCounter",
                    "saveActionBarKeyMap", "combatPulseMs", "blinkPeriod", "singleColorFlag", "canvas"));
    EXPECT_EQ(state["myScanRect"].dump(), "[2.0,0.0,80.0,1.0]");
    EXPECT_EQ(state["keyToColorMap"].size(), 528U);
    EXPECT_EQ(state["saveActionBarKeyMap"].dump(), "[]");
}

TEST(StateDumpTest, ShowsWhatEachKindOfControlHas) {
    const auto controls = dumped("start\naction \"colorWellDropped:\" 99 0.5 0 1\ndump controls");
    EXPECT_EQ(controls["keyCoolColor"].dump(), R"({"enabled":true,"color":[0.5,0.0,1.0]})");
    EXPECT_EQ(controls["blinkTimeTextbox"].dump(), R"({"enabled":true,"text":"1.0"})");
    EXPECT_EQ(controls["singleColorModeBtn"].dump(), R"({"on":false,"enabled":true})");
    EXPECT_EQ(controls["autorunNoneMI"].dump(), R"({"on":true,"enabled":true,"title":"None"})");
    EXPECT_EQ(controls["menu507"].dump(), R"({"enabled":true,"selected":0,"title":""})");
    EXPECT_EQ(controls["cooldownPreviewBtn"].dump(), R"({"enabled":true})");
    EXPECT_EQ(controls["colorProgrammerWindow"].dump(), R"({"visible":false})");
    EXPECT_FALSE(controls.contains("myTextScroll")); // its text has a dump of its own
}

} // namespace
} // namespace glimra::tools
