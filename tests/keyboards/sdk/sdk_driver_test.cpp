#include "keyboards/sdk/sdk_driver.h"

#include "keyboards/sdk/fake_sdk_calls.h"

#include <gmock/gmock.h>

namespace glimra::keyboards {
namespace {

using namespace platform;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;
using tests::takeCalls;

/// Makes every call once; tells how many were taken.
int callEverything(SdkDriver& driver) {
    int version[3] = {};
    std::array<std::uint8_t, kLedBitmapBytes> bitmap{1, 255};
    bitmap[503] = 7;
    int taken = driver.LogiLedGetSdkVersion(version[0], version[1], version[2]);
    for (const LedCall& call : std::initializer_list<LedCall>{
             SetTargetDevice{4}, SetLighting{{1, 2, 3}}, SetLightingFromBitmap{bitmap},
             SetLightingForKeyWithKeyName{0xFFFF2, {4, 5, 6}}, FlashSingleKey{0xFFF1, {7, 8, 9}, 1000, 50},
             PulseSingleKey{0x1C, {10, 11, 12}, {13, 14, 15}, 400, true}, StopEffectsOnKey{0x1C},
             StopEffects{}, StopEffectsOnKey{0}})
        taken += driver.perform(call);
    EXPECT_EQ(bitmap[0], 1);
    return taken;
}

TEST(SdkDriver, HandsEveryCallToTheLibraryWhileItRuns) {
    SdkDriver driver({"/nowhere/first.so", FAKE_SDK});
    EXPECT_EQ(callEverything(driver), 0);
    ASSERT_TRUE(driver.LogiLedInit());
    EXPECT_TRUE(driver.LogiLedInit());
    EXPECT_EQ(driver.reason(), "");
    EXPECT_EQ(driver.library(), FAKE_SDK);
    EXPECT_EQ(callEverything(driver), 9) << "all but the last";
    driver.LogiLedShutdown();
    EXPECT_EQ(callEverything(driver), 0);
    EXPECT_EQ(takeCalls(FAKE_SDK), "Init\n"
                                   "SetTargetDevice 4\n"
                                   "SetLighting 1 2 3\n"
                                   "SetLightingFromBitmap 1 255 7\n"
                                   "SetLightingForKeyWithKeyName 1048562 4 5 6\n"
                                   "FlashSingleKey 65521 7 8 9 1000 50\n"
                                   "PulseSingleKey 28 10 11 12 13 14 15 400 1\n"
                                   "StopEffectsOnKey 28\n"
                                   "StopEffects\n"
                                   "StopEffectsOnKey 0\n"
                                   "Shutdown\n");
}

TEST(SdkDriver, AnUnusableLibraryGivesAReasonAndIsNeverCalled) {
    const auto refused = [](std::filesystem::path library) {
        SdkDriver driver({std::move(library)});
        EXPECT_FALSE(driver.LogiLedInit());
        EXPECT_EQ(callEverything(driver), 0);
        return driver.reason();
    };
    EXPECT_EQ(refused("/nowhere/sdk.so"), "There is no library /nowhere/sdk.so.");
    EXPECT_THAT(refused(std::filesystem::path(FAKE_SDK).parent_path()), HasSubstr("directory"));
    const auto open = std::filesystem::path(FAKE_SDK).parent_path() / "open";
    std::filesystem::create_directory(open);
    std::filesystem::permissions(open, std::filesystem::perms::all);
    EXPECT_THAT(refused(open), HasSubstr("others than you and root"));
    EXPECT_THAT(refused(FAKE_SDK_LACKING), EndsWith(" has no function LogiLedPulseSingleKey."));
    EXPECT_THAT(refused(FAKE_SDK_REFUSING), EndsWith(" refused to start."));
    EXPECT_THAT(usualSdkLibraries("/home/me"), Contains(HasSubstr("/home/me/.local/lib/")));
    EXPECT_THAT(usualSdkLibraries({}), SizeIs(testing::Ge(2U)));
    EXPECT_EQ(takeCalls(FAKE_SDK_LACKING) + takeCalls(FAKE_SDK_REFUSING), "Init\n");
}

} // namespace
} // namespace glimra::keyboards
