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
#include "screenlink/screen_reader.h"

#include <atomic>
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

private:
    void logLedDriver();
    void startTimers();

    platform::Platform& m_platform;
    Outlets m_outlets;

    LogState m_logState;
    lighting::LightingState m_lightingState;
    profiles::ProfileState m_profileState;
    events::EffectState m_effectState;
    events::OptionState m_optionState;
    events::MessageState m_messageState;
    events::CooldownState m_cooldownState;
    double scanWidth = 0.0;
    int scanOffset = 0;
    screenlink::SharedStripGeometry m_stripGeometry;
    std::atomic<bool> suspendScreenReads = false;
    std::atomic<bool> keepTheScannerRunning = true;

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
