#pragma once

#include "app/action_key_setter.h"
#include "app/canvas_edits.h"
#include "app/color_painter.h"
#include "app/color_programmer.h"
#include "app/launcher.h"
#include "app/message_log.h"
#include "app/outlets.h"
#include "app/profile_transfer.h"
#include "app/unsaved_edits.h"
#include "app/window_closer.h"
#include "events/cooldown_display.h"
#include "events/dispatcher.h"
#include "events/effects.h"
#include "events/event_state.h"
#include "lighting/lighting_output.h"
#include "platform/platform.h"
#include "profiles/action_key_map.h"
#include "profiles/profile_state.h"
#include "profiles/profile_store.h"
#include "screenlink/calibration.h"
#include "screenlink/message_pump.h"
#include "screenlink/message_queue.h"
#include "screenlink/scan_settings.h"
#include "screenlink/screen_reader.h"
#include "screenlink/stale_effects.h"

#include <optional>

namespace glimra::app {

/// All that the application remembers, in the parts in which its operations share it.
struct State {
    LogState log;
    lighting::LightingState lighting;
    profiles::ProfileState profile;
    profiles::CanvasBuffer canvas;
    profiles::CanvasKeyCodes canvasKeyCodes;
    profiles::ActionKeyMap actionKeys;
    std::vector<lighting::KeyCode> saveActionBarKeyMap;
    events::EffectState effects;
    events::OptionState options;
    events::MessageState messages;
    events::CooldownState cooldowns;
    screenlink::ScanSettings scan;
    screenlink::SharedStripGeometry stripGeometry;
    screenlink::ReaderFlags readerFlags;
    LauncherState launcher;
};

/// The application: owns all state for the whole run, makes the operations that work on it, and has one
/// method for everything that the platform or the user can ask. Main thread only, but for
/// `appendToMessageQueue`.
///
/// The platform calls `applicationDidFinishLaunching` once; to quit it calls `applicationShouldTerminate`,
/// waits for the reply, and then calls `applicationWillTerminate`, after which nothing of the application
/// runs.
class AppDelegate {
public:
    explicit AppDelegate(const platform::Platform& platform);

    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    void applicationDidFinishLaunching();
    platform::TerminateReply applicationShouldTerminate();
    void applicationWillTerminate();
    bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }

    Outlets& outlets() { return m_outlets; }
    const State& state() const { return m_state; }

    /// Writes a line, without its end, into the log: what the machine has to say.
    void tell(std::string_view line);
    /// Takes a token as the reader does; any thread.
    void appendToMessageQueue(std::string_view token);
    /// Draws the keyboard canvas; only while its window is shown.
    void drawKeyboardCanvas(platform::Painter& painter);
    /// Whether the profile on the canvas shows cooldowns, whichever the keyboard shows.
    bool canvasShowsCooldowns() const;
    bool canUndo() const { return m_canvasEdits.canUndo(); }
    bool canRedo() const { return m_canvasEdits.canRedo(); }

    // What the desktop tells the user about the run.
    std::uint64_t validFrames() const { return activeScreenReader.validFrames(); }
    std::uint64_t dispatchedMessages() const { return m_messagePump.dispatchedMessages(); }
    bool gameIsInFront() const { return m_messagePump.gameIsInFront(); }
    bool isCalibrating() const { return m_calibration.isRunning(); }

    // User actions, by their selectors; `actions.h` lists them. What an action's control shows is set before.
    void calibrateButton();
    void calibrateMI();
    void debugMenuItem();
    void mouseDown(double x, double y);
    void mouseDragged(double x, double y);
    void cooldownCheck();
    void revealCooldownColors();
    void blinkTimeChanged();
    void setColorsMI();
    void setColorsBtn();
    void controlAllLightsCheck();
    void singleColorModeCheck();
    void autoToggleProfileClicked();
    void combatChatWarningClicked();
    void paintingColorPicker();
    void colorWellDropped(const platform::ColorWell& well);
    void colorOK();
    void colorCancel();
    void profileSelectPopup();
    void profileChangeAnswer(int tag);
    void copyProfileSameSame();
    void testLightsMI();
    void testButton();
    void resetLightsMI();
    void resetClicked();
    void openWindowToMapKeys();
    void actionKeyMenuClick(int number, std::string_view title);
    void actionKeySetterOK();
    void actionKeySetterCanx();
    void ExportPreferencesMI();
    void ImportPreferencesMI();
    void autorunNoneMI();
    void autorunBNetMI();
    void autorunWowMI();
    void autorunClassicMI();
    void launchBNet();
    void launchWow();
    void launchClassic();
    void editGameNamesMI();
    void launchOptionsOK();
    void aboutMenuItem();
    void AboutLinkClicked();
    void openDownloadsPage();
    void helpMenuItem();
    void myBtnClicked();
    void windowShouldClose(platform::Window& window);

    // What a desktop can ask besides.
    /// Shows a profile (1 to 9; another number does nothing) as it is stored, and leaves the canvas alone.
    void showProfile(int profile);
    /// Asks what shall become of unsaved edits, of the profile that the keyboard shows, if there are any.
    /// Only where the user wants to go on editing does the canvas count as edited afterwards.
    void settleEdits();
    void undo();
    void redo();
    /// What is edited next is a step of its own to `undo`.
    void endEdit();
    /// A colour was tried and given up: its well shows again what it showed before. Nothing counts as edited
    /// if nothing else was meanwhile.
    void colorWellRestored(const platform::ColorWell& well);
    /// Whether long effects end by themselves when the game is gone; remembered.
    void setEndStaleEffects(bool endThem);

private:
    void logVersions();
    void showTestPattern();
    void startLedDriver();
    void loadCalibration();
    void loadProfiles();
    void loadEndStaleEffects();
    void startReading();
    void screenAboutToSleep();
    void screenWakesUpFromSleep();

    platform::Platform m_platform;
    Outlets m_outlets;
    State m_state;

    // In building order: each is made from those above it.
    MessageLog m_log;
    lighting::LightingOutput m_lighting;
    ColorPainter m_colorPainter;
    profiles::ProfileStore m_profileStore;
    events::Effects m_effects;
    events::CooldownDisplay m_cooldownDisplay;
    events::Dispatcher m_dispatcher;
    screenlink::MessageQueue m_messageQueue;
    screenlink::MessagePump m_messagePump;
    screenlink::Calibration m_calibration;
    UnsavedEdits m_unsavedEdits;
    CanvasEdits m_canvasEdits;
    WindowCloser m_windowCloser;
    ActionKeySetter m_actionKeySetter;
    ColorProgrammer m_colorProgrammer;
    ProfileTransfer m_profileTransfer;
    Launcher m_launcher;
    screenlink::ScreenReader activeScreenReader;
    screenlink::StaleEffects m_staleEffects;

    std::optional<platform::TimerId> myTimer;
    std::optional<platform::TimerId> myTimer2;
};

} // namespace glimra::app
