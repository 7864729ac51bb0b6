#pragma once

#include "platform/platform.h"
#include "trace/traced_led_driver.h"
#include "trace/traced_services.h"

#include <utility>

namespace glimra::trace {

/// A platform that writes a line for all that leaves the application through it.
class TracedPlatform {
public:
    /// `writer` and all that `traced` refers to must outlive it; `nameOfWindow` names windows in lines.
    TracedPlatform(const platform::Platform& traced, TraceWriter& writer,
                   TracedWindowSystem::WindowName nameOfWindow)
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
    TracedLedDriver m_ledDriver;
    TracedWorkspace m_workspace;
    TracedWindowSystem m_windowSystem;
    TracedChildProcesses m_childProcesses;
    TracedSounds m_sounds;
    TracedSystemLog m_systemLog;
    TracedProcessActivity m_processActivity;
    platform::Platform m_platform;
};

} // namespace glimra::trace
