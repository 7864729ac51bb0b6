#include "profiles/profile_store.h"

#include "profiles/color_archive.h"
#include "simulated/user_defaults.h"
#include "support/system_lines.h"

#include <gmock/gmock.h>

namespace glimra::profiles {
namespace {

using lighting::Color;
using platform::NumberArray;
using platform::StoredValue;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr lighting::KeyCode kF1 = 59;
constexpr lighting::KeyCode kEsc = 1;
constexpr lighting::KeyCode kW = 17;
constexpr lighting::KeyCode kTwo = 3;
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

TEST_F(ProfileStoreTest, FreshStoreGivesTheFactoryProfile) {
    canvasKeyCodes = {kEsc, kTwo, kF1};
    store.loadProfile(9);
    EXPECT_EQ(state.keyboardColorSet[0], (Color{1.0, 0.5, 0.0}));
    EXPECT_EQ(state.keyboardColorSet[1], (Color{0.3, 0.0, 0.0}));
    EXPECT_EQ(state.keyboardColorSet[12], (Color{0.0, 0.5, 1.0}));
    EXPECT_EQ(state.keyToColorMap.size(), 528U);
    for (const auto& [key, slot] : {std::pair{kW, 6}, {kEsc, 5}, {kTwo, 12}, {kF1, 8}, {kSpare, 4}})
        EXPECT_EQ(state.keyToColorMap[key], slot) << key;
    EXPECT_EQ(state.useSpellCooldowns, (std::array<bool, 10>{}));
    EXPECT_THAT(systemLog.lines, IsEmpty());
    EXPECT_THAT(defaults.all(), IsEmpty());
}

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

TEST_F(ProfileStoreTest, ALoadBuildsTheBitmapOfItsOwnProfile) {
    defaults.set("useActionBarCooldowns3", true);
    state.dimmedKeys = {kEsc, 512};
    const auto before = state.keyboardColorBitmap;
    store.loadProfile(3);
    EXPECT_EQ(state.useSpellCooldowns, (std::array<bool, 10>{true, false, false, true}));
    EXPECT_TRUE(canvas.usingActionbarCooldowns);
    EXPECT_EQ(state.keyboardColorBitmap[3],
              lighting::buildColorBitmap(state.keyboardColorSet, state.keyToColorMap));
    store.loadProfileWithCooldowns(4); // shows none
    EXPECT_EQ(state.keyboardColorBitmap[4], state.keyboardColorBitmap[3]);
    EXPECT_EQ(state.useSpellCooldowns, (std::array<bool, 10>{false, false, false, true}));
    EXPECT_FALSE(canvas.usingActionbarCooldowns);
    store.loadProfileWithCooldowns(3);
    lighting::LedBitmap marked = state.keyboardColorBitmap[4];
    lighting::paintCell(marked, *lighting::keyBitmapOffset(kEsc), {76, 0, 0});
    EXPECT_EQ(state.keyboardColorBitmap[3], marked);
    for (const std::size_t other : {0U, 1U, 2U, 5U, 9U})
        EXPECT_EQ(state.keyboardColorBitmap[other], before[other]);
}

TEST_F(ProfileStoreTest, SavingStoresTheCanvasAndLoadsNothing) {
    store.loadProfile(1);
    canvas.fillFrom(state);
    canvas.keyColorSet[4] = {0.1, 0.2, 0.3};
    canvas.keysToColors[kF1] = 12;
    canvas.usingActionbarCooldowns = false;
    state.useSpellCooldowns[0] = true;
    store.saveProfile(2);
    EXPECT_EQ(defaults.all().size(), 15U);
    EXPECT_EQ(defaults.get("useActionBarCooldowns2"), StoredValue(true));
    EXPECT_TRUE(canvas.usingActionbarCooldowns);
    EXPECT_FALSE(state.useSpellCooldowns[2]);
    EXPECT_NE(state.keyToColorMap[kF1], 12);
    EXPECT_EQ(state.keyboardColorBitmap[2],
              lighting::buildColorBitmap(canvas.keyColorSet, canvas.keysToColors));
    store.loadProfile(2);
    EXPECT_TRUE(std::ranges::equal(state.keyboardColorSet, canvas.keyColorSet));
    EXPECT_EQ(state.keyToColorMap, canvas.keysToColors);
    EXPECT_TRUE(state.useSpellCooldowns[2]);
}

TEST_F(ProfileStoreTest, DamagedAndForeignValuesCountAsAbsentAndAreSaidOnce) {
    const NumberArray odd{std::int64_t{12}, 5.9, std::int64_t{13}, std::int64_t{-1}, 1e300, -0.5};
    defaults.set("colorAColor1", std::string("red"));
    defaults.set("colorBColor1", platform::Data{4, 11, 's'});
    defaults.set("colorCColor1", archiveColor({0.5, 0.5, 0.5}));
    defaults.set("savedKeyToColorMap1", odd);
    defaults.set("useActionBarCooldowns1", std::string("true"));
    defaults.set("savedKeyToColorMap2", slots(4097, 7));
    defaults.set("useActionBarCooldowns2", std::int64_t{1});
    defaults.set("savedKeyToColorMap3", std::string("7, 7, 7"));
    for (int round = 0; round < 2; ++round) {
        store.loadProfile(1);
        EXPECT_EQ(state.keyboardColorSet[4], (Color{0.0, 1.0, 1.0}));
        EXPECT_EQ(state.keyboardColorSet[5], (Color{1.0, 1.0, 0.0}));
        EXPECT_EQ(state.keyboardColorSet[6], (Color{0.5, 0.5, 0.5}));
        EXPECT_THAT(std::vector(state.keyToColorMap.begin(), state.keyToColorMap.begin() + 7),
                    ElementsAre(12, 5, 4, 4, 4, 0, 4));
        EXPECT_FALSE(state.useSpellCooldowns[1]);
        for (const int profile : {2, 3}) {
            store.loadProfile(profile);
            EXPECT_EQ(state.keyToColorMap.size(), 529U); // the map of profile 1, with the factory's keys
            EXPECT_EQ(state.keyToColorMap[kW], 6);
        }
        EXPECT_TRUE(state.useSpellCooldowns[2]);
    }
    EXPECT_THAT(systemLog.lines,
                ElementsAre(HasSubstr("\"colorAColor1\""), HasSubstr("\"colorBColor1\""),
                            HasSubstr("\"savedKeyToColorMap1\""), HasSubstr("\"useActionBarCooldowns1\""),
                            HasSubstr("\"savedKeyToColorMap2\""), HasSubstr("\"savedKeyToColorMap3\"")));
}

} // namespace
} // namespace glimra::profiles
