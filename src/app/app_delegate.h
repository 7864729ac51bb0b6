#pragma once

#include "app/operations.h"

namespace glimra::app {

/// The application: owns all state for the whole run and the operations that work on it, starts them and
/// shuts them down. Main thread only, but for what an operation says of itself.
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
    /// The settings were changed from outside: takes them as the launch does. Returns false, and takes
    /// nothing, while the user edits some of them in a window.
    bool takeChangedSettings();
    bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }

    Outlets& outlets() { return m_outlets; }
    const State& state() const { return m_state; }
    Operations& operations() { return m_operations; }
    const Operations& operations() const { return m_operations; }

private:
    void logVersions();
    void startLedDriver();
    void loadCalibration();
    void loadProfiles();
    void startReading();
    void screenAboutToSleep();
    void screenWakesUpFromSleep();

    platform::Platform m_platform;
    Outlets m_outlets;
    State m_state;
    Operations m_operations;
};

} // namespace glimra::app
