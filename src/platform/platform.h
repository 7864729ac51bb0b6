#pragma once

#include "platform/application.h"
#include "platform/bundle.h"
#include "platform/led_driver.h"
#include "platform/run_loop.h"
#include "platform/screen_capture.h"
#include "platform/system_services.h"
#include "platform/user_defaults.h"
#include "platform/window_system.h"
#include "platform/worker_loop.h"
#include "platform/workspace.h"

#include <functional>

namespace glimra::platform {

/// Everything the application needs from its machine. All of it outlives the application object. To add a
/// decorator, copy this struct and replace members of the copy.
struct Platform {
    std::reference_wrapper<Application> application;
    std::reference_wrapper<RunLoop> runLoop;
    /// The reader's thread, and the capture that only this thread uses.
    std::reference_wrapper<WorkerLoop> readerThread;
    std::reference_wrapper<ScreenCapture> readerCapture;
    /// The main thread's own capture.
    std::reference_wrapper<ScreenCapture> mainCapture;
    std::reference_wrapper<LedDriver> ledDriver;
    std::reference_wrapper<UserDefaults> userDefaults;
    std::reference_wrapper<Workspace> workspace;
    std::reference_wrapper<WindowSystem> windowSystem;
    std::reference_wrapper<ChildProcesses> childProcesses;
    std::reference_wrapper<Sounds> sounds;
    std::reference_wrapper<RandomNumbers> random;
    std::reference_wrapper<SystemLog> systemLog;
    std::reference_wrapper<ProcessActivity> processActivity;
    std::reference_wrapper<Modifiers> modifiers;
    Bundle bundle{};
    /// The folder of the settings file; empty when the settings are not kept in a file.
    std::string settingsFolder{};
};

} // namespace glimra::platform
