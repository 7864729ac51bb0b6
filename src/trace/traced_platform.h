#pragma once

#include "platform/platform.h"
#include "trace/traced_led_driver.h"
#include "trace/traced_services.h"

#include <utility>

namespace glimra::trace {

/// A platform that writes a line for everything that leaves the application through it.
class TracedPlatform {
public:
    /// `writer` and all that `traced` refers to must outlive it. `nameOfWindow` gives the names of windows in
    /// lines.
    TracedPlatform(const platform::Platform& traced, TraceWriter& writer,
                   TracedWindowSystem::WindowName nameOfWindow)
        : m_ledDriver(traced.ledDriver, writer),
          m_workspace(traced.workspace, writer),
          m_windowSystem(traced.windowSystem, writer, std::move(nameOfWindow)),
          m_childProcesses(traced.childProcesses, writer),
          m_sounds(traced.sounds, writer),
          m_systemLog(traced.systemLog, writer),
          m_processActivity(traced.processActivity, writer),
          m_platform(traced) {
        m_platform.ledDriver = m_ledDriver;
        m_platform.workspace = m_workspace;
        m_platform.windowSystem = m_windowSystem;
        m_platform.childProcesses = m_childProcesses;
        m_platform.sounds = m_sounds;
        m_platform.systemLog = m_systemLog;
        m_platform.processActivity = m_processActivity;
    }

    const platform::Platform& platform() const { return m_platform; }

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
