#include "profiles/action_key_map.h"

#include "simulated/user_defaults.h"
#include "support/system_lines.h"

#include <gmock/gmock.h>

namespace glimra::profiles {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ActionKeyMapTest : public ::testing::Test {
protected:
    ActionKeyMap load() { return loadActionKeyMap(defaults, systemLog); }

    simulated::InMemoryDefaults defaults;
    tests::SystemLines systemLog;
};

TEST_F(ActionKeyMapTest, EmptyStoreGivesTheFactoryKeys) {
    const ActionKeyMap keys = load();
    EXPECT_THAT(keys.actionBar1Keys, ElementsAre(2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13));
    EXPECT_THAT(keys.actionBar5Keys, testing::Each(0U));
    EXPECT_THAT(keys.actionBar6Keys, ElementsAre(59, 60, 61, 62, 0, 63, 64, 65, 66, 0, 67, 68));
    EXPECT_THAT(systemLog.lines, IsEmpty());
}

TEST_F(ActionKeyMapTest, StoredKeysAreTakenSlotBySlot) {
    defaults.set("key605", std::int64_t{87});
    defaults.set("key112", std::int64_t{0});
    defaults.set("key506", 522.9);
    defaults.set("key101", true);
    defaults.set("key507", std::int64_t{2}); // the bar reports no such slot
    ActionKeyMap expected = loadActionKeyMap(simulated::InMemoryDefaults{}, systemLog);
    expected.actionBar6Keys[4] = 87;
    expected.actionBar1Keys[11] = 0;
    expected.actionBar5Keys[5] = 522;
    expected.actionBar1Keys[0] = 1;
    EXPECT_EQ(load(), expected);
    EXPECT_THAT(systemLog.lines, IsEmpty());
}

TEST_F(ActionKeyMapTest, WhatNamesNoKeyGivesTheFactoryKeyAndIsSaid) {
    const std::int64_t aboveUnsigned = std::int64_t{1} << 32;
    for (const platform::StoredValue& value :
         {platform::StoredValue(std::int64_t{-1}), platform::StoredValue(aboveUnsigned + 2),
          platform::StoredValue(std::int64_t{84}), platform::StoredValue(std::int64_t{527}),
          platform::StoredValue(1e300), platform::StoredValue(std::string("2")),
          platform::StoredValue(platform::NumberArray{}), platform::StoredValue(platform::Data{2})}) {
        defaults.set("key604", value);
        EXPECT_EQ(load().actionBar6Keys[3], 62U);
    }
    EXPECT_EQ(systemLog.lines.size(), 8U);
    EXPECT_THAT(systemLog.lines, testing::Each(HasSubstr("\"key604\"")));
}

TEST_F(ActionKeyMapTest, AllThirtySlotsAreStored) {
    ActionKeyMap keys = load();
    keys.actionBar5Keys[5] = 16;
    keys.actionBar6Keys[11] = 0;
    saveActionKeyMap(keys, defaults);
    EXPECT_EQ(defaults.all().size(), 30U);
    EXPECT_EQ(load(), keys);
}

} // namespace
} // namespace glimra::profiles
