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

namespace glimra::platform {

/// Everything the application asks of its machine. All of it outlives the application object.
struct Platform {
    Application& application;
    RunLoop& runLoop;
    /// The reader's thread, and the capture that it alone uses.
    WorkerLoop& readerThread;
    ScreenCapture& readerCapture;
    /// The main thread's own capture.
    ScreenCapture& mainCapture;
    LedDriver& ledDriver;
    UserDefaults& userDefaults;
    Workspace& workspace;
    WindowSystem& windowSystem;
    ChildProcesses& childProcesses;
    Sounds& sounds;
    RandomNumbers& random;
    SystemLog& systemLog;
    ProcessActivity& processActivity;
    Modifiers& modifiers;
    Bundle bundle{};
    /// The folder of the settings file; empty where the settings are in no file.
    std::string settingsFolder{};
};

} // namespace glimra::platform
