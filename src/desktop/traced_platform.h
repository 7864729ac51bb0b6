#pragma once

#include "platform/platform.h"
#include "trace/traced_led_driver.h"
#include "trace/traced_services.h"

namespace glimra::desktop {

/// A platform that writes a line for all that leaves the application through it.
class TracedPlatform {
public:
    /// `writer` and all that `traced` refers to must outlive it; `nameOfWindow` names windows in lines.
    TracedPlatform(const platform::Platform& traced, trace::TraceWriter& writer,
                   trace::TracedWindowSystem::WindowName nameOfWindow)
        : m_ledDriver(traced.ledDriver, writer),
          m_workspace(traced.workspace, writer),
          m_windowSystem(traced.windowSystem, writer, std::move(nameOfWindow)),
          m_childProcesses(traced.childProcesses, writer),
          m_sounds(traced.sounds, writer),
          m_systemLog(traced.systemLog, writer),
          m_processActivity(traced.processActivity, writer),
          m_platform{.application = traced.application,
                     .runLoop = traced.runLoop,
                     .readerThread = traced.readerThread,
                     .readerCapture = traced.readerCapture,
                     .mainCapture = traced.mainCapture,
                     .ledDriver = m_ledDriver,
                     .userDefaults = traced.userDefaults,
                     .workspace = m_workspace,
                     .windowSystem = m_windowSystem,
                     .childProcesses = m_childProcesses,
                     .sounds = m_sounds,
                     .random = traced.random,
                     .systemLog = m_systemLog,
                     .processActivity = m_processActivity,
                     .modifiers = traced.modifiers,
                     .bundle = traced.bundle,
                     .settingsFolder = traced.settingsFolder} {}

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
