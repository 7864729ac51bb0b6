#pragma once

#include "desktop/desktop_workspace.h"
#include "desktop/lifecycle.h"
#include "desktop/options.h"
#include "desktop/process_activity.h"
#include "desktop/qt_run_loop.h"
#include "desktop/qt_window_system.h"
#include "desktop/settings_file.h"
#include "desktop/sounds.h"
#include "desktop/system_services.h"
#include "desktop/thread_worker_loop.h"
#include "desktop/x11/screen_capture.h"
#include "keyboards/virtual_keyboard.h"
#include "platform/platform.h"

namespace glimra::desktop {

/// Everything that the application asks of its machine, on a Linux desktop. Main thread, after QApplication.
struct DesktopPlatform {
    explicit DesktopPlatform(const Options& options);

    /// What of it the application sees.
    platform::Platform platform();

    StderrSystemLog systemLog;
    SettingsFile settings;
    QtRunLoop runLoop;
    Lifecycle lifecycle{runLoop};
    X11ScreenCapture readerCapture;
    X11ScreenCapture mainCapture;
    ThreadWorkerLoop readerThread;
    keyboards::VirtualKeyboard keyboard{QtRunLoop::monotonicNow};
    DesktopWorkspace workspace;
    QtWindowSystem windowSystem{settings};
    ChildProcesses childProcesses{systemLog};
    Sounds sounds;
    RandomNumbers random;
    ProcessActivity processActivity;
    Modifiers modifiers;
};

} // namespace glimra::desktop
