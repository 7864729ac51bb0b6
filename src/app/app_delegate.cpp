#include "app/app_delegate.h"

#include <string>

namespace glimra::app {

namespace {

constexpr std::string_view kActivityReason = "Reading the screen";
constexpr std::string_view kFrameName = "windowPosition";
/// First byte of the bitmap that belongs to no profile.
constexpr std::uint8_t kBitmapMark = 0x45;

} // namespace

AppDelegate::AppDelegate(const platform::Platform& platform)
    : m_platform(platform),
      m_operations(m_platform, m_outlets, m_state) {
}

void AppDelegate::applicationDidFinishLaunching() {
    logVersions();
    m_platform.processActivity.get().begin(kActivityReason);
    m_platform.workspace.get().observeSleep([this] { screenAboutToSleep(); },
                                            [this] { screenWakesUpFromSleep(); });
    startLedDriver();
    loadCalibration();
    m_state.actionKeys = profiles::loadActionKeyMap(m_platform.userDefaults, m_platform.systemLog);
    loadProfiles();
    m_platform.windowSystem.get().restoreFrame(kFrameName);
    m_outlets.mainWindow.bringToFront();
    m_operations.colorProgrammer.loadSingleColorMode();
    m_operations.colorProgrammer.loadAutoToggleProfile();
    m_operations.cooldownDisplay.loadBlinkTime();
    m_operations.help.loadHelpText();
    m_operations.launcher.loadApplicationNames();
    m_operations.launcher.autorun();
    m_operations.colorProgrammer.loadCombatChatWarning();
    m_operations.staleEffects.loadEndStaleEffects();
    m_operations.messageClock.loadFastResponse();
    m_operations.actionKeySetter.fillKeyMenusArray();
    startReading();
}

platform::TerminateReply AppDelegate::applicationShouldTerminate() {
    m_state.readerFlags.keepTheScannerRunning = false;
    return platform::TerminateReply::Later;
}

void AppDelegate::applicationWillTerminate() {
    m_platform.processActivity.get().end(kActivityReason);
    m_platform.windowSystem.get().saveFrame(kFrameName);
    m_platform.ledDriver.get().LogiLedShutdown();
    m_state.log.hasEnded = true;
}

bool AppDelegate::takeChangedSettings() {
    for (const platform::Window* editor :
         {&m_outlets.colorProgrammerWindow, &m_outlets.actionKeySetterWindow, &m_outlets.launchOptionWindow})
        if (editor->visible.get())
            return false;
    const int shown = m_state.profile.activeColorProfile;
    loadCalibration();
    m_state.actionKeys = profiles::loadActionKeyMap(m_platform.userDefaults, m_platform.systemLog);
    loadProfiles();
    m_state.profile.activeColorProfile = shown;
    m_operations.profileStore.loadProfile(shown);
    m_operations.colorProgrammer.loadSingleColorMode();
    m_operations.colorProgrammer.loadAutoToggleProfile();
    m_operations.colorProgrammer.loadCombatChatWarning();
    m_operations.cooldownDisplay.loadBlinkTime();
    m_operations.launcher.loadApplicationNames();
    m_operations.staleEffects.loadEndStaleEffects();
    m_operations.messageClock.loadFastResponse();
    return true;
}

void AppDelegate::logVersions() {
    const std::string& framework = m_platform.bundle.ledFrameworkVersion;
    m_operations.log.appendLog(
        "Glimra version " + m_platform.bundle.shortVersion + " using Logitech LED bundle " +
        (framework.empty() ? "Undetermined; not found (this isn't good)" : framework) + "\n");
}

void AppDelegate::startLedDriver() {
    if (!m_platform.ledDriver.get().LogiLedInit()) {
        m_operations.log.appendLog(
            "Unable to initialize the Logitech LED driver. Please ensure Logitech Gaming Software is "
            "installed and running, then restart Glimra.\n");
        return;
    }
    int majorNumber = 0;
    int minorNumber = 0;
    int buildNumber = 0;
    m_platform.ledDriver.get().LogiLedGetSdkVersion(majorNumber, minorNumber, buildNumber);
    m_operations.log.appendLog("Logitech LED driver (version " + std::to_string(majorNumber) + "." +
                               std::to_string(minorNumber) + "." + std::to_string(buildNumber) +
                               ") initialized successfully.\n");
}

void AppDelegate::loadCalibration() {
    if (screenlink::loadScanSettings(m_state.scan, {m_platform.userDefaults, m_platform.systemLog}))
        m_operations.log.appendLog(
            "\nCalibration settings not found!\nPlease install the Glimraxmit AddOn into your WoW "
            "Interface/AddOns folder and then calibrate Glimra to your screen. Click Help for "
            "details.\n\n");
    m_state.stripGeometry.set(
        {{static_cast<double>(m_state.scan.scanOffset), 0.0, m_state.scan.scanWidth, 1.0},
         screenlink::updatePixelOffsets(m_state.scan.scanWidth)});
}

void AppDelegate::loadProfiles() {
    for (int profile = lighting::kProfileCount; profile >= 1; --profile)
        m_operations.profileStore.loadProfile(profile);
    m_state.profile.activeColorProfile = 1;
    m_state.lighting.keyboardColorBitmap[0][0] = kBitmapMark;
}

void AppDelegate::startReading() {
    m_operations.messageClock.start();
    m_operations.screenReader.recordColorsThread(m_platform.readerThread);
}

void AppDelegate::screenAboutToSleep() {
    m_operations.log.appendDebugLog("Going to sleep; suspending screen reads.\n");
    m_state.readerFlags.suspendScreenReads = true;
}

void AppDelegate::screenWakesUpFromSleep() {
    m_operations.log.appendDebugLog("Waking from sleep; resuming screen reads.\n");
    m_state.readerFlags.suspendScreenReads = false;
}

} // namespace glimra::app
