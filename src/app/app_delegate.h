#pragma once

#include "app/message_log.h"
#include "app/outlets.h"
#include "events/dispatcher.h"
#include "events/event_state.h"
#include "lighting/lighting_output.h"
#include "platform/platform.h"
#include "profiles/profile_state.h"
#include "screenlink/message_pump.h"
#include "screenlink/message_queue.h"
#include "screenlink/scan_settings.h"
#include "screenlink/screen_reader.h"

#include <optional>

namespace glimra::app {

/// The application: owns all state for the whole run, makes the operations that work on it, and has one
/// method for everything that the platform or the user can ask. Main thread only.
///
/// The platform calls `applicationDidFinishLaunching` once; to quit it calls `applicationShouldTerminate`,
/// waits for the reply, and then calls `applicationWillTerminate`, after which nothing of the application
/// runs.
class AppDelegate {
public:
    explicit AppDelegate(platform::Platform& platform);

    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    void applicationDidFinishLaunching();
    platform::TerminateReply applicationShouldTerminate();
    void applicationWillTerminate();

    Outlets& outlets() { return m_outlets; }
    /// Takes a token as the reader does; any thread.
    void appendToMessageQueue(std::string_view token);

    // The state, to look at.
    const LogState& logState() const { return m_logState; }
    const lighting::LightingState& lightingState() const { return m_lightingState; }
    const profiles::ProfileState& profileState() const { return m_profileState; }
    const events::EffectState& effectState() const { return m_effectState; }
    const events::OptionState& optionState() const { return m_optionState; }
    const events::MessageState& messageState() const { return m_messageState; }
    const events::CooldownState& cooldownState() const { return m_cooldownState; }
    const screenlink::SharedStripGeometry& stripGeometry() const { return m_stripGeometry; }
    const screenlink::ScanSettings& scanSettings() const { return m_scanSettings; }
    const screenlink::ReaderFlags& readerFlags() const { return m_readerFlags; }

private:
    void logVersions();
    void startLedDriver();
    void loadCalibration();
    void startReading();
    void screenAboutToSleep();
    void screenWakesUpFromSleep();

    platform::Platform& m_platform;
    Outlets m_outlets;

    LogState m_logState;
    lighting::LightingState m_lightingState;
    profiles::ProfileState m_profileState;
    events::EffectState m_effectState;
    events::OptionState m_optionState;
    events::MessageState m_messageState;
    events::CooldownState m_cooldownState;
    screenlink::ScanSettings m_scanSettings;
    screenlink::SharedStripGeometry m_stripGeometry;
    screenlink::ReaderFlags m_readerFlags;

    MessageLog m_log;
    lighting::LightingOutput m_lighting;
    events::Dispatcher m_dispatcher;
    screenlink::MessageQueue m_messageQueue;
    screenlink::MessagePump m_messagePump;
    screenlink::ScreenReader activeScreenReader;
    std::optional<platform::TimerId> myTimer;
    std::optional<platform::TimerId> myTimer2;
};

} // namespace glimra::app
