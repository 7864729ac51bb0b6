#include "keyboards/sdk/sdk_driver.h"

#include "keyboards/sdk/fake_sdk_calls.h"

#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <string>

namespace glimra::keyboards {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using tests::takeCalls;

/// Makes every call once; tells how many were taken.
int callEverything(SdkDriver& driver) {
    int versionMajor = 0;
    int versionMinor = 0;
    int build = 0;
    std::array<std::uint8_t, platform::kLedBitmapBytes> bitmap{};
    bitmap[0] = 1;
    bitmap[1] = 255;
    bitmap[503] = 7;
    int taken = 0;
    taken += driver.LogiLedGetSdkVersion(versionMajor, versionMinor, build);
    taken += driver.LogiLedSetTargetDevice(4);
    taken += driver.LogiLedSetLighting(1, 2, 3);
    taken += driver.LogiLedSetLightingFromBitmap(bitmap);
    EXPECT_EQ(bitmap[0], 1);
    taken += driver.LogiLedSetLightingForKeyWithKeyName(0xFFFF2, 4, 5, 6);
    taken += driver.LogiLedFlashSingleKey(0xFFF1, 7, 8, 9, 1000, 50);
    taken += driver.LogiLedPulseSingleKey(0x1C, 10, 11, 12, 13, 14, 15, 400, true);
    taken += driver.LogiLedPulseSingleKey(0x1C, 10, 11, 12, 13, 14, 15, 401, false);
    taken += driver.LogiLedStopEffectsOnKey(0x1C);
    taken += driver.LogiLedStopEffects();
    EXPECT_EQ(driver.LogiLedStopEffectsOnKey(0), false);
    return taken;
}

TEST(SdkDriver, HandsEveryCallToTheLibraryWhileItRuns) {
    SdkDriver driver({"/nowhere/first.so", FAKE_SDK});
    EXPECT_EQ(callEverything(driver), 0);
    ASSERT_TRUE(driver.LogiLedInit());
    EXPECT_TRUE(driver.LogiLedInit());
    EXPECT_EQ(driver.reason(), "");
    EXPECT_EQ(driver.library(), FAKE_SDK);
    EXPECT_EQ(callEverything(driver), 10);
    driver.LogiLedShutdown();
    EXPECT_EQ(callEverything(driver), 0);
    EXPECT_EQ(takeCalls(FAKE_SDK), "Init\n"
                                   "GetSdkVersion\n"
                                   "SetTargetDevice 4\n"
                                   "SetLighting 1 2 3\n"
                                   "SetLightingFromBitmap 1 255 7\n"
                                   "SetLightingForKeyWithKeyName 1048562 4 5 6\n"
                                   "FlashSingleKey 65521 7 8 9 1000 50\n"
                                   "PulseSingleKey 28 10 11 12 13 14 15 400 1\n"
                                   "PulseSingleKey 28 10 11 12 13 14 15 401 0\n"
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
    EXPECT_THAT(refused(std::filesystem::temp_directory_path()), HasSubstr("directory"));
    EXPECT_THAT(refused("/proc/self/cmdline"), HasSubstr("/proc/self/cmdline"));
    EXPECT_THAT(refused(FAKE_SDK_LACKING), EndsWith(" has no function LogiLedPulseSingleKey."));
    EXPECT_EQ(takeCalls(FAKE_SDK_LACKING), "");
    EXPECT_THAT(refused(FAKE_SDK_REFUSING), EndsWith(" refused to start."));
    EXPECT_EQ(takeCalls(FAKE_SDK_REFUSING), "Init\n");
}

} // namespace
} // namespace glimra::keyboards
