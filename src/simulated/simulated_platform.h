#pragma once

#include "platform/platform.h"
#include "platform/silent_log.h"
#include "simulated/application.h"
#include "simulated/run_loop.h"
#include "simulated/screen.h"
#include "simulated/seeded_random.h"
#include "simulated/services.h"
#include "simulated/user_defaults.h"
#include "simulated/window_system.h"
#include "simulated/worker_loop.h"
#include "simulated/workspace.h"

namespace glimra::simulated {

/// A machine in memory, without its keyboard. The members are public so that the caller can simulate what
/// happens outside the application.
struct SimulatedPlatform {
    explicit SimulatedPlatform(std::uint32_t seed) : random(seed) {}

    SimulatedPlatform(const SimulatedPlatform&) = delete;
    SimulatedPlatform& operator=(const SimulatedPlatform&) = delete;

    /// The platform to give to the application. It must not outlive this object.
    platform::Platform platform(platform::LedDriver& keyboard, platform::Bundle bundle);

    SimulatedRunLoop runLoop;
    SimulatedApplication application{runLoop};
    SimulatedWorkerLoop readerThread{runLoop};
    SimulatedScreen screen;
    SimulatedCapture readerCapture{screen};
    SimulatedCapture mainCapture{screen};
    InMemoryDefaults userDefaults;
    SimulatedWorkspace workspace;
    SimulatedWindowSystem windowSystem;
    NoChildProcesses childProcesses;
    NoSounds sounds;
    SeededRandom random;
    platform::SilentLog systemLog;
    NoActivity processActivity;
    SimulatedModifiers modifiers;
};

} // namespace glimra::simulated
