#include "app/app_delegate.h"

#include "app/color_wells.h"

#include <string>

namespace glimra::app {

namespace {

constexpr std::string_view kActivityReason = "Reading the screen";
constexpr std::string_view kFrameName = "windowPosition";
/// First byte of the bitmap that belongs to no profile.
constexpr std::uint8_t kBitmapMark = 0x45;
constexpr platform::Duration kReadPeriod = std::chrono::milliseconds(200);
constexpr platform::Duration kQueuePeriod = std::chrono::milliseconds(100);

} // namespace

AppDelegate::AppDelegate(const platform::Platform& platform)
    : m_platform(platform),
      m_log(m_state.log, m_outlets.myTextScroll),
      m_lighting(platform.ledDriver, platform.random, m_state.lighting),
      m_colorPainter({m_lighting, m_state.canvas, m_state.profile, m_outlets.keyboardCanvas,
                      m_state.options.useSingleColorMode},
                     m_state.canvasKeyCodes),
      m_profileStore({platform.userDefaults, platform.systemLog, m_state.lighting, m_state.canvas,
                      m_state.canvasKeyCodes}),
      m_effects(platform.runLoop, platform.ledDriver, platform.random, m_lighting),
      m_cooldownDisplay({platform.runLoop, platform.ledDriver, platform.userDefaults, platform.systemLog,
                         m_lighting, m_state.lighting, m_profileStore, m_state.canvas,
                         m_outlets.keyboardCanvas, m_outlets.blinkTimeTextbox, m_state.actionKeys,
                         m_state.profile, m_state.effects, m_state.options, m_state.cooldowns}),
      m_dispatcher({platform.ledDriver, m_log, m_lighting, m_state.lighting, m_profileStore, m_state.profile,
                    m_effects, m_cooldownDisplay, m_state.options, m_state.effects, m_state.messages}),
      m_messageQueue(m_state.messages, m_state.effects, m_state.cooldowns),
      m_messagePump({platform.runLoop, platform.workspace, platform.ledDriver, m_lighting, m_dispatcher,
                     m_state.messages, m_state.effects, m_state.options, m_state.lighting, m_state.profile}),
      m_calibration({platform.runLoop, platform.mainCapture, platform.sounds, platform.childProcesses,
                     platform.userDefaults, m_log, m_state.messages, m_state.scan, m_state.stripGeometry}),
      m_unsavedEdits(platform.windowSystem, m_outlets, m_profileStore, m_state.profile),
      m_canvasEdits({m_outlets, m_profileStore, m_state.profile, m_state.canvas, m_state.lighting}),
      m_windowCloser(m_outlets, platform.application),
      m_actionKeySetter({platform.userDefaults, m_outlets, m_unsavedEdits, m_windowCloser, m_profileStore,
                         m_state.profile, m_state.canvas, m_state.lighting, m_state.actionKeys,
                         m_state.saveActionBarKeyMap}),
      m_colorProgrammer({platform.runLoop, platform.windowSystem, platform.userDefaults, platform.systemLog,
                         m_outlets, m_unsavedEdits, m_canvasEdits, m_lighting, m_state.lighting,
                         m_profileStore, m_state.profile, m_state.canvas, m_cooldownDisplay, m_state.options,
                         m_state.messages}),
      m_profileTransfer({platform.windowSystem, platform.userDefaults, platform.systemLog, m_log,
                         platform.bundle, platform.settingsFolder, m_outlets, m_lighting, m_state.lighting,
                         m_profileStore, m_state.profile, m_state.canvas, m_state.canvasKeyCodes,
                         m_cooldownDisplay, m_state.options}),
      m_launcher({platform.windowSystem, platform.userDefaults, platform.systemLog, platform.childProcesses,
                  platform.modifiers, m_log, m_outlets, m_windowCloser, m_state.launcher}),
      activeScreenReader(platform.readerCapture, platform.runLoop, m_log, platform.application,
                         m_messageQueue, m_state.stripGeometry, m_state.readerFlags),
      m_staleEffects({platform.runLoop, activeScreenReader, m_messagePump, platform.ledDriver, m_log,
                      m_outlets.keyboardCanvas, m_effects, m_lighting, m_state.lighting, m_state.profile,
                      m_state.effects, m_state.options}) {
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
    m_colorProgrammer.loadSingleColorMode();
    m_colorProgrammer.loadAutoToggleProfile();
    m_cooldownDisplay.loadBlinkTime();
    m_outlets.helpTextView.text.set(m_platform.bundle.helpText);
    m_launcher.loadApplicationNames();
    m_launcher.autorun();
    m_colorProgrammer.loadCombatChatWarning();
    loadEndStaleEffects();
    m_actionKeySetter.fillKeyMenusArray();
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
}

void AppDelegate::tell(std::string_view line) {
    m_log.appendLog(std::string(line) + "\n");
}

void AppDelegate::appendToMessageQueue(std::string_view token) {
    m_messageQueue.appendToMessageQueue(token);
}

void AppDelegate::drawKeyboardCanvas(platform::Painter& painter) {
    m_colorPainter.drawRect(painter);
}

void AppDelegate::mouseDown(double x, double y) {
    m_canvasEdits.endStep();
    mouseDragged(x, y);
}

void AppDelegate::mouseDragged(double x, double y) {
    m_canvasEdits.perform(EditHistory::kStroke, [&] { m_colorPainter.mouseDown(x, y); });
}

void AppDelegate::calibrateButton() {
    m_calibration.calibrateScreen();
}

void AppDelegate::calibrateMI() {
    m_calibration.calibrateScreen();
}

void AppDelegate::debugMenuItem() {
    m_state.log.debugMode = !m_state.log.debugMode;
    m_outlets.debugMenuItem.on.set(m_state.log.debugMode);
    if (m_state.log.debugMode) {
        m_log.appendLog("Debug mode active.\n");
        m_log.appendLog("The scanRect is " + screenlink::rectText(m_state.stripGeometry.copy().myScanRect) +
                        "\n");
    } else {
        m_log.appendLog("Debug mode off.\n");
    }
}

void AppDelegate::cooldownCheck() {
    m_cooldownDisplay.showCooldowns(m_outlets.actionBarEffectCheckbox.on.get());
}

void AppDelegate::revealCooldownColors() {
    m_cooldownDisplay.revealCooldownColors();
}

void AppDelegate::blinkTimeChanged() {
    m_cooldownDisplay.blinkTimeChanged();
}

void AppDelegate::resetLightsMI() {
    m_dispatcher.resetLights(events::ResetNotice::Logged);
}

void AppDelegate::resetClicked() {
    m_dispatcher.resetLights(events::ResetNotice::Logged);
}

void AppDelegate::openWindowToMapKeys() {
    m_actionKeySetter.openWindowToMapKeys();
}

void AppDelegate::actionKeyMenuClick(int number, std::string_view title) {
    m_actionKeySetter.actionKeyMenuClick(number, title);
}

void AppDelegate::actionKeySetterOK() {
    m_actionKeySetter.actionKeySetterOK();
}

void AppDelegate::actionKeySetterCanx() {
    m_actionKeySetter.actionKeySetterCanx();
}

void AppDelegate::profileChangeAnswer(int tag) {
    m_platform.windowSystem.get().stopModal(tag);
}

void AppDelegate::windowShouldClose(platform::Window& window) {
    m_windowCloser.windowShouldClose(window);
}

void AppDelegate::showProfile(int profile) {
    if (profile < 1 || profile > static_cast<int>(lighting::kProfileCount))
        return;
    m_dispatcher.switchToProfile(profile);
    // Loading gives the canvas the flag of what it loads.
    m_state.canvas.usingActionbarCooldowns = canvasShowsCooldowns();
}

bool AppDelegate::canvasShowsCooldowns() const {
    return m_state.lighting.useSpellCooldowns.at(static_cast<std::size_t>(m_state.canvas.profile));
}

void AppDelegate::settleEdits() {
    if (m_unsavedEdits.settle())
        m_state.profile.profileTouched = false;
}

void AppDelegate::undo() {
    m_canvasEdits.undo();
}

void AppDelegate::redo() {
    m_canvasEdits.redo();
}

void AppDelegate::endEdit() {
    m_canvasEdits.endStep();
}

void AppDelegate::colorWellRestored(const platform::ColorWell& well) {
    colorWellDropped(well);
    m_canvasEdits.settleTouched();
}

void AppDelegate::setColorsMI() {
    m_colorProgrammer.openColorProgrammer();
}

void AppDelegate::setColorsBtn() {
    m_colorProgrammer.openColorProgrammer();
}

void AppDelegate::controlAllLightsCheck() {
    m_colorProgrammer.applyCanvasColors();
}

void AppDelegate::singleColorModeCheck() {
    m_colorProgrammer.singleColorModeCheck();
}

void AppDelegate::autoToggleProfileClicked() {
    m_colorProgrammer.autoToggleProfileClicked();
}

void AppDelegate::combatChatWarningClicked() {
    m_colorProgrammer.combatChatWarningClicked();
}

void AppDelegate::paintingColorPicker() {
    m_colorProgrammer.paintingColorPicker();
}

void AppDelegate::colorWellDropped(const platform::ColorWell& well) {
    m_canvasEdits.perform(slotOfWell(well), [&] { m_colorProgrammer.colorWellDropped(well); });
}

void AppDelegate::colorOK() {
    m_colorProgrammer.colorOK();
}

void AppDelegate::colorCancel() {
    m_colorProgrammer.colorCancel();
}

void AppDelegate::profileSelectPopup() {
    m_colorProgrammer.profileSelectPopup();
}

void AppDelegate::copyProfileSameSame() {
    m_colorProgrammer.copyProfileSameSame();
}

void AppDelegate::testLightsMI() {
    showTestPattern();
}

void AppDelegate::testButton() {
    showTestPattern();
}

void AppDelegate::ExportPreferencesMI() {
    m_profileTransfer.exportPreferences();
}

void AppDelegate::ImportPreferencesMI() {
    m_profileTransfer.importPreferences();
}

void AppDelegate::autorunNoneMI() {
    m_launcher.setAutorun(m_outlets.autorunNoneMI, "");
}

void AppDelegate::autorunBNetMI() {
    m_launcher.setAutorun(m_outlets.autorunBNetMI, m_state.launcher.BNAppName);
}

void AppDelegate::autorunWowMI() {
    m_launcher.setAutorun(m_outlets.autorunWowMI, m_state.launcher.WowAppName);
}

void AppDelegate::autorunClassicMI() {
    m_launcher.setAutorun(m_outlets.autorunClassicMI, m_state.launcher.WowClassicAppName);
}

void AppDelegate::launchBNet() {
    m_launcher.launchApp(m_state.launcher.BNAppName);
}

void AppDelegate::launchWow() {
    m_launcher.launchApp(m_state.launcher.WowAppName);
}

void AppDelegate::launchClassic() {
    m_launcher.launchApp(m_state.launcher.WowClassicAppName);
}

void AppDelegate::editGameNamesMI() {
    m_launcher.editGameNames();
}

void AppDelegate::launchOptionsOK() {
    m_platform.windowSystem.get().stopModal(0);
}

void AppDelegate::aboutMenuItem() {
    const platform::Bundle& bundle = m_platform.bundle;
    m_outlets.aboutVersionLabel.text.set("Version " + bundle.shortVersion + " (" + bundle.version + ")");
    m_outlets.aboutCopyLabel.text.set(bundle.copyright);
    m_outlets.aboutLinkLabel.text.set(bundle.homePage);
    m_outlets.aboutWindow.bringToFront();
}

void AppDelegate::AboutLinkClicked() {
    m_platform.workspace.get().openUrl(m_platform.bundle.homePage);
}

void AppDelegate::openDownloadsPage() {
    m_platform.workspace.get().openUrl(m_platform.bundle.downloadPage);
}

void AppDelegate::helpMenuItem() {
    m_outlets.helpWindow.bringToFront();
    m_state.messages.confirmCalibrate = true;
}

void AppDelegate::myBtnClicked() {
    m_platform.runLoop.get().post([this] { m_outlets.helpWindow.bringToFront(); });
    m_state.messages.confirmCalibrate = true;
}

void AppDelegate::showTestPattern() {
    m_log.appendLog("Showing test pattern on the keyboard.\n");
    m_messageQueue.appendToMessageQueue("H");
    m_state.messages.confirmCalibrate = true;
}

void AppDelegate::logVersions() {
    const std::string& framework = m_platform.bundle.ledFrameworkVersion;
    m_log.appendLog("Glimra version " + m_platform.bundle.shortVersion + " using Logitech LED bundle " +
                    (framework.empty() ? "Undetermined; not found (this isn't good)" : framework) + "\n");
}

void AppDelegate::startLedDriver() {
    if (!m_platform.ledDriver.get().LogiLedInit()) {
        m_log.appendLog(
            "Unable to initialize the Logitech LED driver. Please ensure Logitech Gaming Software is "
            "installed and running, then restart Glimra.\n");
        return;
    }
    int majorNumber = 0;
    int minorNumber = 0;
    int buildNumber = 0;
    m_platform.ledDriver.get().LogiLedGetSdkVersion(majorNumber, minorNumber, buildNumber);
    m_log.appendLog("Logitech LED driver (version " + std::to_string(majorNumber) + "." +
                    std::to_string(minorNumber) + "." + std::to_string(buildNumber) +
                    ") initialized successfully.\n");
}

void AppDelegate::loadCalibration() {
    if (screenlink::loadScanSettings(m_state.scan, {m_platform.userDefaults, m_platform.systemLog}))
        m_log.appendLog(
            "\nCalibration settings not found!\nPlease install the Glimraxmit AddOn into your WoW "
            "Interface/AddOns folder and then calibrate Glimra to your screen. Click Help for "
            "details.\n\n");
    m_state.stripGeometry.set(
        {{static_cast<double>(m_state.scan.scanOffset), 0.0, m_state.scan.scanWidth, 1.0},
         screenlink::updatePixelOffsets(m_state.scan.scanWidth)});
}

void AppDelegate::loadProfiles() {
    for (int profile = lighting::kProfileCount; profile >= 1; --profile)
        m_profileStore.loadProfile(profile);
    m_state.profile.activeColorProfile = 1;
    m_state.lighting.keyboardColorBitmap[0][0] = kBitmapMark;
}

void AppDelegate::loadEndStaleEffects() {
    const platform::SettingsReader reader{m_platform.userDefaults, m_platform.systemLog};
    m_state.options.endStaleEffects = reader.value(platform::settings::kEndStaleEffects);
}

void AppDelegate::setEndStaleEffects(bool endThem) {
    m_state.options.endStaleEffects = endThem;
    m_platform.userDefaults.get().set(platform::settings::kEndStaleEffects.key, endThem);
}

void AppDelegate::startReading() {
    myTimer = m_platform.runLoop.get().repeat(kReadPeriod, [this] {
        m_messagePump.readMsgQueue();
        if (!m_platform.runLoop.get().isTerminated())
            m_staleEffects.check();
    });
    myTimer2 = m_platform.runLoop.get().repeat(kQueuePeriod, [this] { m_messageQueue.handleMessageQueue(); });
    activeScreenReader.recordColorsThread(m_platform.readerThread);
}

void AppDelegate::screenAboutToSleep() {
    m_log.appendDebugLog("Going to sleep; suspending screen reads.\n");
    m_state.readerFlags.suspendScreenReads = true;
}

void AppDelegate::screenWakesUpFromSleep() {
    m_log.appendDebugLog("Waking from sleep; resuming screen reads.\n");
    m_state.readerFlags.suspendScreenReads = false;
}

} // namespace glimra::app
