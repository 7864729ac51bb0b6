#pragma once

#include "simulated/simulated_platform.h"
#include "trace/traced_led_driver.h"
#include "trace/traced_services.h"

namespace glimra::tools {

/// The simulated machine with everything on the way out of the application written down.
struct ReplayMachine {
    /// `keyboard` takes the LED calls. `nameOfWindow` tells the name of a window that has a modal session.
    ReplayMachine(std::uint32_t seed, platform::LedDriver& keyboard, trace::TraceWriter& writer,
                  trace::TracedWindowSystem::WindowName nameOfWindow);

    simulated::SimulatedPlatform outside;
    trace::TracedLedDriver ledDriver;
    trace::TracedWorkspace workspace;
    trace::TracedWindowSystem windowSystem;
    trace::TracedChildProcesses childProcesses;
    trace::TracedSounds sounds;
    trace::TracedSystemLog systemLog;
    trace::TracedProcessActivity processActivity;
    platform::Platform platform;
};

} // namespace glimra::tools
