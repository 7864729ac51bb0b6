// What no script can do: use the application while one of its actions waits, and give it a folder of its own.

#include "app/app_delegate.h"
#include "keyboards/virtual_keyboard.h"
#include "platform/whole_file.h"
#include "screenlink/demonstration.h"
#include "simulated/simulated_platform.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <filesystem>

namespace glimra::app {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

class AppDelegateTest : public testing::Test {
protected:
    AppDelegateTest() { delegate.applicationDidFinishLaunching(); }
    platform::Platform platformWithFolder() {
        platform::Platform made = machine.platform(keyboard, {});
        made.settingsFolder = testing::TempDir();
        made.readerCapture = demonstration;
        return made;
    }
    void calibrate() { delegate.operations().calibration.calibrateScreen(); }
    std::string log() { return delegate.outlets().myTextScroll.text; }

    simulated::SimulatedPlatform machine{1};
    keyboards::VirtualKeyboard keyboard{[this] { return machine.runLoop.now(); }};
    screenlink::DemonstrationCapture demonstration{machine.readerCapture, machine.runLoop};
    platform::Platform platform = platformWithFolder();
    AppDelegate delegate{platform};
};

TEST_F(AppDelegateTest, ACalibrationIsOneHoweverOftenItIsAskedFor) {
    calibrate();
    machine.runLoop.after(1s, [&] { calibrate(); });
    calibrate();
    EXPECT_EQ(machine.runLoop.now(), 90.075s);
    const std::string said = log();
    EXPECT_EQ(said.find("ATTEMPTING"), said.rfind("ATTEMPTING"));
    calibrate();
    EXPECT_NE(log(), said) << "asks whether it is to calibrate once more";
}

TEST_F(AppDelegateTest, ACalibrationThatIsQuitStoresNothing) {
    machine.userDefaults.set("scanWidth", 80.5);
    calibrate();
    machine.runLoop.after(1s, [&] { machine.runLoop.terminate(); });
    calibrate();
    EXPECT_EQ(machine.runLoop.now(), 1s);
    EXPECT_EQ(machine.userDefaults.get("scanWidth"), platform::StoredValue(80.5));
    EXPECT_THAT(log(), Not(HasSubstr("failed")));
}

TEST_F(AppDelegateTest, ACanceledCalibrationLeavesEverythingAsItWas) {
    machine.userDefaults.set("scanWidth", 80.5);
    calibrate();
    machine.runLoop.after(1s, [&] { delegate.operations().calibration.cancel(); });
    calibrate();
    EXPECT_LT(machine.runLoop.now(), 1.1s);
    EXPECT_EQ(machine.userDefaults.get("scanWidth"), platform::StoredValue(80.5));
    EXPECT_TRUE(delegate.state().messages.confirmCalibrate);
}

TEST_F(AppDelegateTest, TheDemonstrationNeedsNoDisplayAndYieldsToTheGame) {
    using End = screenlink::DemonstrationCapture::End;
    std::optional<End> end;
    demonstration.over.observe([&](End how) { end = how; });
    const auto after = [&](platform::Duration time) {
        EXPECT_TRUE(machine.runLoop.runUntil(machine.runLoop.now() + time));
        return delegate.state().effects.combatAnimationPlaying;
    };
    machine.screen.disconnectDisplay();
    delegate.operations().staleEffects.setEndStaleEffects(true);
    after(40s);
    demonstration.play();
    EXPECT_TRUE(after(4s)) << "also where no game was heard of for long";
    after(20s);
    EXPECT_EQ(end, End::Played);
    EXPECT_EQ(delegate.operations().messagePump.dispatchedMessages(),
              screenlink::demonstrationSteps().size());
    EXPECT_FALSE(delegate.state().effects.isAnyPlaying());

    // A picture that stands where the strip would be is no strip.
    const auto fight = screenlink::encodeToken({{}, 'C'});
    machine.screen.connectDisplay(1920, 1080, 1);
    machine.screen.setStripGeometry(0, 82);
    machine.screen.paintStrip(screenlink::testPattern());
    demonstration.play();
    after(1s);
    EXPECT_TRUE(demonstration.isPlaying());
    machine.screen.paintStrip(fight.announce);
    after(100ms);
    EXPECT_EQ(end, End::RealStrip);
    machine.screen.paintStrip(fight.confirm);
    EXPECT_TRUE(after(1s));
}

TEST_F(AppDelegateTest, AStripThatGoesIsNotFound) {
    simulated::SimulatedScreen::StripCells cells{0xFF0000, 0,        0x00FFFF, 0xFFFFFF, 0xFF00FF, 0x0000FF,
                                                 0xFFFF00, 0xFF0000, 0x00FF00, 0xFFFFFF, 0};
    machine.screen.setStripGeometry(0.0, 110.0);
    machine.screen.paintStrip(cells);
    machine.runLoop.after(500ms, [&] {
        cells[0] = 0;
        machine.screen.paintStrip(cells);
    });
    calibrate();
    calibrate();
    EXPECT_THAT(log(), HasSubstr("failed"));
}

TEST_F(AppDelegateTest, AnImportKeepsTheProfilesAsTheyWere) {
    const std::string kept = platform.settingsFolder + "before-import.keycolormap";
    const std::string file = platform.settingsFolder + "exported.keycolormap";
    const auto blinkTimeAfterImport = [&](const std::string& path) {
        machine.windowSystem.queuePath(path);
        delegate.operations().profileTransfer.importPreferences();
        return std::get<double>(machine.userDefaults.get("blinkTimePref").value());
    };
    machine.userDefaults.set("blinkTimePref", 1.5);
    machine.windowSystem.queuePath(file);
    delegate.operations().profileTransfer.exportPreferences();
    EXPECT_FALSE(std::filesystem::exists(kept));
    machine.userDefaults.set("blinkTimePref", 2.5);
    EXPECT_EQ(blinkTimeAfterImport(file), 1.5);
    EXPECT_EQ(blinkTimeAfterImport(kept), 2.5);
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(kept).permissions(), perms::owner_read | perms::owner_write);
    const std::string pipe = platform.settingsFolder + "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), S_IRWXU), 0);
    EXPECT_EQ(blinkTimeAfterImport(pipe), 2.5);

    // Where it cannot be kept, nothing is imported, and nothing half-written is left.
    std::filesystem::remove(kept);
    std::filesystem::create_directories(kept + "/in the way");
    EXPECT_EQ(blinkTimeAfterImport(file), 2.5);
    EXPECT_THAT(log(), HasSubstr("so nothing was imported"));
    EXPECT_FALSE(std::filesystem::exists(kept + ".new"));
}

} // namespace
} // namespace glimra::app
