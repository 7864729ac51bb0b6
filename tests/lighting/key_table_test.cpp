#include "lighting/key_table.h"
#include "lighting/keyboard_layout.h"

#include <gmock/gmock.h>

#include <set>

namespace glimra::lighting {
namespace {

TEST(KeyTable, CellsLieInTheBitmapAndNoTwoKeysShareOne) {
    std::set<std::size_t> offsets;
    for (const KeyBitmapOffset& key : keyBitmapOffsets) {
        EXPECT_LT(key.offset, platform::kLedBitmapBytes - 4);
        EXPECT_TRUE(offsets.insert(key.offset).second) << key.code;
    }
    EXPECT_EQ(keyBitmapOffset(83), 496U); // NumPad ., the last one
    EXPECT_EQ(keyBitmapOffset(kNoKey), std::nullopt);
    EXPECT_EQ(keyBitmapOffset(521), std::nullopt);
    EXPECT_EQ(keyBitmapOffset(0xFFFFFFFF), std::nullopt);
}

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

TEST(KeyTable, NamesAreComparedExactlyAndDriverNamesTranslated) {
    EXPECT_EQ(keyOfDisplayName(" 1"), 2U);
    EXPECT_EQ(keyOfDisplayName("1"), std::nullopt);
    EXPECT_EQ(displayNameOfKey(523), std::nullopt);
    EXPECT_EQ(driverKeyName(512), 0xFFF1U);
    EXPECT_EQ(driverKeyName(522), 0xFFFF2U);
    EXPECT_EQ(driverKeyName(523), 523U);
    EXPECT_EQ(driverKeyName(0x1C), 0x1CU);
}

TEST(KeyboardLayout, DrawsEveryKeyOnceWithoutOverlap) {
    std::set<KeyCode> codes;
    for (const KeyRect& key : kKeyboardLayout) {
        EXPECT_TRUE(codes.insert(key.code).second) << key.code;
        EXPECT_TRUE(displayNameOfKey(key.code)) << key.code;
        for (const KeyRect& other : kKeyboardLayout)
            EXPECT_TRUE(&key == &other || key.x + key.width <= other.x || other.x + other.width <= key.x ||
                        key.y + key.height <= other.y || other.y + other.height <= key.y)
                << key.code << " and " << other.code;
    }
    EXPECT_EQ(codes.size(), 115U);
}

} // namespace
} // namespace glimra::lighting
