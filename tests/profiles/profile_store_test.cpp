#include "profiles/profile_store.h"

#include "simulated/user_defaults.h"
#include "support/system_lines.h"

#include <gmock/gmock.h>

namespace glimra::profiles {
namespace {

using platform::NumberArray;
using testing::IsEmpty;

constexpr lighting::KeyCode kF1 = 59;
constexpr lighting::KeyCode kW = 17;
constexpr lighting::KeyCode kSpare = 300; // no key

class ProfileStoreTest : public ::testing::Test {
protected:
    NumberArray slots(std::size_t count, int slot) const {
        return NumberArray(count, platform::Number(std::int64_t{slot}));
    }

    simulated::InMemoryDefaults defaults;
    tests::SystemLines systemLog;
    lighting::LightingState state;
    CanvasBuffer canvas;
    CanvasKeyCodes canvasKeyCodes;
    ProfileStore store{{defaults, systemLog, state, canvas, canvasKeyCodes}};
};

TEST_F(ProfileStoreTest, FactoryMapIsWrittenOverTheMapInMemory) {
    defaults.set("savedKeyToColorMap3", slots(512, 7));
    store.loadProfile(3);
    store.loadProfile(2);
    // Without a canvas the keys outside the groups keep the slots of the profile before; the last group
    // reaches beyond the shortest map that counts as whole.
    for (const auto& [key, slot] : {std::pair{kW, 6}, {kF1, 7}, {kSpare, 7}, {522U, 11}})
        EXPECT_EQ(state.keyToColorMap[key], slot) << key;
    canvasKeyCodes = {kF1};
    store.loadProfile(1);
    EXPECT_EQ(state.keyToColorMap[kF1], 8);
    EXPECT_EQ(state.keyToColorMap[kSpare], 7);
}

TEST_F(ProfileStoreTest, ShortMapsAreFilledUpAndWholeOnesKeepTheirLength) {
    for (const auto& [stored, loaded] :
         {std::pair{0, 529}, {104, 529}, {511, 529}, {512, 512}, {528, 528}, {600, 600}, {4096, 4096}}) {
        defaults.set("savedKeyToColorMap1", slots(static_cast<std::size_t>(stored), 9));
        store.loadProfile(1);
        lighting::KeyMap expected(static_cast<std::size_t>(stored), 9);
        expected.resize(static_cast<std::size_t>(loaded), 4);
        EXPECT_EQ(state.keyToColorMap, expected) << stored;
    }
    EXPECT_THAT(systemLog.lines, IsEmpty());
}

} // namespace
} // namespace glimra::profiles
