#include "support/replay_text.h"

#include <gmock/gmock.h>

namespace glimra {
namespace {

using testing::Contains;
using testing::IsEmpty;

const std::string kGameLeavesInAFight = R"(
    start
    front "com.blizzard.worldofwarcraft"
    wait 0.5
    show "3"
    show "C"
    wait 1
    front "org.example.editor"
)";

TEST(StaleEffects, EndOnceWhenTheGameIsGoneForHalfAMinute) {
    const std::string script = "default \"endStaleEffects\" true\n" + kGameLeavesInAFight + "wait 60";
    const auto calls = test::ledCalls(script, 3.0);
    EXPECT_THAT(calls, Contains("31.8 StopEffectsOnKey 59"));
    EXPECT_THAT(calls, Contains("31.8 SetLightingFromBitmap").Times(1)) << "the profile";
    EXPECT_THAT(test::ledCalls(script, 33.0), IsEmpty());
    const auto state = test::stateAfter(script);
    EXPECT_EQ(state["combatAnimationPlaying"], false);
    EXPECT_EQ(state["activeColorProfile"], 1);

    // Where it is switched, the last that shows is profile 2.
    EXPECT_THAT(test::ledCalls("default \"autoToggleProfile\" true\n" + script, 3.0),
                Contains("31.8 SetLightingFromBitmap").Times(2));
}

TEST(StaleEffects, StayWhileThereIsASignOfTheGame) {
    const std::string wanted = "default \"endStaleEffects\" true\n";
    for (const std::string& script : {
             kGameLeavesInAFight + "wait 60",
             wanted + kGameLeavesInAFight + "front \"com.blizzard.worldofwarcraft\"\nwait 60",
             wanted + kGameLeavesInAFight + "wait 20\nshow \"w\"\nwait 25",
             wanted + kGameLeavesInAFight + "wait 29",
         })
        EXPECT_EQ(test::stateAfter(script)["combatAnimationPlaying"], true) << script;
    EXPECT_THAT(test::ledCalls(wanted + "start\nwait 60", 1.0), IsEmpty()) << "nothing to end";
}

} // namespace
} // namespace glimra
