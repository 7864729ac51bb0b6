#include "app/app_delegate.h"

#include "profiles/factory_colors.h"

#include <string>

namespace glimra::app {

namespace {

constexpr std::string_view kActivityReason = "Reading the screen";
constexpr std::string_view kFrameName = "windowPosition";
constexpr platform::Duration kReadPeriod = std::chrono::milliseconds(200);
constexpr platform::Duration kQueuePeriod = std::chrono::milliseconds(100);

} // namespace

AppDelegate::AppDelegate(platform::Platform& platform)
    : m_platform(platform),
      m_log(m_logState, m_outlets.myTextScroll),
      m_lighting(platform.ledDriver, platform.random, m_lightingState),
      m_dispatcher({platform.ledDriver, m_log, m_lighting, m_effectState, m_messageState}),
      m_messageQueue(m_messageState, m_effectState, m_cooldownState),
      m_messagePump({platform.runLoop, platform.workspace, platform.ledDriver, m_lighting, m_dispatcher,
                     m_messageState, m_effectState, m_optionState, m_lightingState, m_profileState}),
      activeScreenReader(platform.readerCapture, platform.runLoop, m_log, platform.application,
                         m_messageQueue, m_stripGeometry, m_readerFlags) {
}

void AppDelegate::applicationDidFinishLaunching() {
    logVersions();
    m_platform.processActivity.begin(kActivityReason);
    m_platform.workspace.observeSleep([this] { screenAboutToSleep(); }, [this] { screenWakesUpFromSleep(); });
    startLedDriver();
    loadCalibration();
    m_lightingState.keyboardColorSet = profiles::kFactoryColorSet;
    for (lighting::LedBitmap& bitmap : m_lightingState.keyboardColorBitmap)
        bitmap = lighting::buildColorBitmap(m_lightingState.keyboardColorSet, m_lightingState.keyToColorMap);
    m_platform.windowSystem.restoreFrame(kFrameName);
    m_outlets.mainWindow.bringToFront();
    startReading();
}

platform::TerminateReply AppDelegate::applicationShouldTerminate() {
    m_readerFlags.keepTheScannerRunning = false;
    return platform::TerminateReply::Later;
}

void AppDelegate::applicationWillTerminate() {
    m_platform.processActivity.end(kActivityReason);
    m_platform.windowSystem.saveFrame(kFrameName);
    m_platform.ledDriver.LogiLedShutdown();
}

void AppDelegate::appendToMessageQueue(std::string_view token) {
    m_messageQueue.appendToMessageQueue(token);
}

void AppDelegate::logVersions() {
    const std::string& framework = m_platform.bundle.ledFrameworkVersion;
    m_log.appendLog("Glimra version " + m_platform.bundle.shortVersion + " using Logitech LED bundle " +
                    (framework.empty() ? "Undetermined; not found (this isn't good)" : framework) + "\n");
}

void AppDelegate::startLedDriver() {
    if (!m_platform.ledDriver.LogiLedInit()) {
        m_log.appendLog(
            "Unable to initialize the Logitech LED driver. Please ensure Logitech Gaming Software is "
            "installed and running, then restart Glimra.\n");
        return;
    }
    int majorNumber = 0;
    int minorNumber = 0;
    int buildNumber = 0;
    m_platform.ledDriver.LogiLedGetSdkVersion(majorNumber, minorNumber, buildNumber);
    m_log.appendLog("Logitech LED driver (version " + std::to_string(majorNumber) + "." +
                    std::to_string(minorNumber) + "." + std::to_string(buildNumber) +
                    ") initialized successfully.\n");
}

void AppDelegate::loadCalibration() {
    m_scanSettings = screenlink::loadScanSettings(m_platform.userDefaults);
    if (m_scanSettings.notFound)
        m_log.appendLog(
            "\nCalibration settings not found!\nPlease install the Glimraxmit AddOn into your WoW "
            "Interface/AddOns folder and then calibrate Glimra to your screen. Click Help for "
            "details.\n\n");
    m_stripGeometry.set({{static_cast<double>(m_scanSettings.scanOffset), 0.0, m_scanSettings.scanWidth, 1.0},
                         screenlink::updatePixelOffsets(m_scanSettings.scanWidth)});
}

void AppDelegate::startReading() {
    myTimer = m_platform.runLoop.repeat(kReadPeriod, [this] { m_messagePump.readMsgQueue(); });
    myTimer2 = m_platform.runLoop.repeat(kQueuePeriod, [this] { m_messageQueue.handleMessageQueue(); });
    activeScreenReader.recordColorsThread(m_platform.readerThread);
}

void AppDelegate::screenAboutToSleep() {
    m_log.appendDebugLog("Going to sleep; suspending screen reads.\n");
    m_readerFlags.suspendScreenReads = true;
}

void AppDelegate::screenWakesUpFromSleep() {
    m_log.appendDebugLog("Waking from sleep; resuming screen reads.\n");
    m_readerFlags.suspendScreenReads = false;
}

} // namespace glimra::app
