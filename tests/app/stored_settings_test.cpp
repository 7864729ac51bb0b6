#include "support/replay_text.h"

#include <gmock/gmock.h>

namespace glimra {
namespace {

using testing::HasSubstr;
using testing::UnorderedElementsAre;

TEST(StoredSettings, EachThatCannotBeUsedIsSaidOnceAndStandsAside) {
    const std::string script = R"(
        default "singleColorMode" "yes"
        default "combatChatWarning" true
        default "WowAppName" 12
        default "AutorunName" [1, 2]
        default "scanWidth" 1e12
        default "scanOffset" "two"
        start
    )";
    EXPECT_THAT(test::systemLog(script),
                UnorderedElementsAre(HasSubstr("\"singleColorMode\""), HasSubstr("\"WowAppName\""),
                                     HasSubstr("\"AutorunName\""), HasSubstr("\"scanWidth\""),
                                     HasSubstr("\"scanOffset\"")));
    const auto state = test::stateAfter(script);
    EXPECT_EQ(state["useSingleColorMode"], false);
    EXPECT_EQ(state["combatChatWarning"], true);
    EXPECT_EQ(state["WowAppName"], "World of Warcraft");
    EXPECT_EQ(state["scanWidth"], 80.0);
    EXPECT_EQ(state["scanOffset"], 2);
}

} // namespace
} // namespace glimra
