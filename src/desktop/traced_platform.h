#pragma once

#include "platform/platform.h"
#include "trace/traced_led_driver.h"
#include "trace/traced_services.h"

namespace glimra::desktop {

/// A platform that writes a line for all that leaves the application through it.
class TracedPlatform {
public:
    /// All three must outlive it; `nameOfWindow` names windows in lines.
    TracedPlatform(const platform::Platform& traced, trace::TraceWriter& writer,
                   trace::TracedWindowSystem::WindowName nameOfWindow)
        : m_ledDriver(traced.ledDriver, writer),
          m_workspace(traced.workspace, writer),
          m_windowSystem(traced.windowSystem, writer, std::move(nameOfWindow)),
          m_childProcesses(traced.childProcesses, writer),
          m_sounds(traced.sounds, writer),
          m_systemLog(traced.systemLog, writer),
          m_processActivity(traced.processActivity, writer),
          m_platform{traced.application,
                     traced.runLoop,
                     traced.readerThread,
                     traced.readerCapture,
                     traced.mainCapture,
                     m_ledDriver,
                     traced.userDefaults,
                     m_workspace,
                     m_windowSystem,
                     m_childProcesses,
                     m_sounds,
                     traced.random,
                     m_systemLog,
                     m_processActivity,
                     traced.modifiers,
                     traced.bundle,
                     traced.settingsFolder} {}

    platform::Platform& platform() { return m_platform; }

private:
    trace::TracedLedDriver m_ledDriver;
    trace::TracedWorkspace m_workspace;
    trace::TracedWindowSystem m_windowSystem;
    trace::TracedChildProcesses m_childProcesses;
    trace::TracedSounds m_sounds;
    trace::TracedSystemLog m_systemLog;
    trace::TracedProcessActivity m_processActivity;
    platform::Platform m_platform;
};

} // namespace glimra::desktop
