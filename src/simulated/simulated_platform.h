#pragma once

#include "platform/platform.h"
#include "simulated/application.h"
#include "simulated/led_driver.h"
#include "simulated/run_loop.h"
#include "simulated/screen.h"
#include "simulated/seeded_random.h"
#include "simulated/services.h"
#include "simulated/user_defaults.h"
#include "simulated/window_system.h"
#include "simulated/worker_loop.h"
#include "simulated/workspace.h"

namespace glimra::simulated {

/// A whole machine in memory. Its members are there to be looked at and to be told what happens outside.
struct SimulatedPlatform {
    explicit SimulatedPlatform(std::uint32_t seed = 0) : random(seed) {}

    SimulatedPlatform(const SimulatedPlatform&) = delete;
    SimulatedPlatform& operator=(const SimulatedPlatform&) = delete;

    /// What the application is given. It must not outlive this object, nor the application the result.
    platform::Platform platform();

    SimulatedRunLoop runLoop;
    SimulatedApplication application{runLoop};
    SimulatedWorkerLoop readerThread{runLoop};
    SimulatedScreen screen;
    SimulatedCapture readerCapture{screen};
    SimulatedCapture mainCapture{screen};
    RecordingLedDriver ledDriver;
    InMemoryDefaults userDefaults;
    SimulatedWorkspace workspace;
    SimulatedWindowSystem windowSystem;
    RecordingChildProcesses childProcesses;
    RecordingSounds sounds;
    SeededRandom random;
    RecordingSystemLog systemLog;
    SimulatedActivity processActivity;
    SimulatedModifiers modifiers;
    platform::Bundle bundle;
};

} // namespace glimra::simulated
