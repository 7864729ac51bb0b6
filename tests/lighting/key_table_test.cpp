#include "lighting/key_table.h"

#include <gmock/gmock.h>

#include <set>

namespace glimra::lighting {
namespace {

TEST(KeyTable, MenuListIsSortedWithNoKeyFirst) {
    const std::vector<std::string> names = sortedKeyDisplayNames();
    ASSERT_EQ(names.size(), 116U);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
    EXPECT_EQ(names[0], "  No Key");
    EXPECT_EQ(names[1], " 0");
    EXPECT_EQ(names[11], " A");
    EXPECT_EQ(names[36], " Z");
    EXPECT_EQ(names[37], "'");
    const auto at = [&](std::string_view name) { return std::ranges::find(names, name) - names.begin(); };
    EXPECT_LT(at("F 9"), at("F10"));
    EXPECT_EQ(at("F12") + 1, at("G Logo \u00A9"));
    EXPECT_EQ(at("G9") + 1, at("Glimra Badge \u00A9"));
    EXPECT_THAT(std::vector(names.end() - 4, names.end()), testing::ElementsAre("[", "\\", "]", "~"));
}

} // namespace
} // namespace glimra::lighting
