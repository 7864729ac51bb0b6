#pragma once

#include "desktop/loop/lifecycle.h"
#include "desktop/loop/qt_run_loop.h"
#include "desktop/loop/thread_worker_loop.h"
#include "desktop/options.h"
#include "desktop/services/desktop_workspace.h"
#include "desktop/services/linux_commands.h"
#include "desktop/services/power_services.h"
#include "desktop/services/system_services.h"
#include "desktop/services/theme_sounds.h"
#include "desktop/settings/settings_file.h"
#include "desktop/windows/qt_window_system.h"
#include "desktop/x11/resting_capture.h"
#include "desktop/x11/screen_capture.h"
#include "keyboards/chosen_keyboard.h"
#include "platform/controls.h"
#include "platform/platform.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::desktop {

/// Everything that the application asks of its machine, on a Linux desktop. Main thread, after QApplication.
struct DesktopPlatform {
    explicit DesktopPlatform(const Options& options);

    /// What of it the application sees.
    platform::Platform platform();

    /// Lights the keyboard by another driver, from now on and at the next start.
    void chooseKeyboard(const std::string& driver);
    /// Hands each message about the way of capturing to `say`, once until another way is taken: the present
    /// one soon, later ones as they come.
    void tellCaptureWay(std::function<void(std::string_view)> say);

    StderrSystemLog systemLog;
    SettingsFile settings;
    QtRunLoop runLoop;
    Lifecycle lifecycle{runLoop};
    /// The reader's; its state is for any thread.
    X11ScreenCapture readerCapture;
    RestingCapture mainCapture;
    ThreadWorkerLoop readerThread;
    keyboards::ChosenKeyboard keyboard;
    /// Sentences for the user about what could not be done.
    platform::Signal<std::string_view> told;
    /// What the services of the machine cannot do here, for whoever debugs.
    std::vector<std::string> notes;
    PowerServices power;
    DesktopWorkspace workspace;
    QtWindowSystem windowSystem{settings, runLoop};
    /// Speaks and beeps: one thing after the other, and nothing that is long past.
    BackgroundWorker voice{2};
    LinuxCommands childProcesses;
    ThemeSounds sounds{voice};
    RandomNumbers random;
    Modifiers modifiers;

private:
    void sayCaptureWay();

    std::function<void(std::string_view)> m_sayCaptureWay;
    std::string_view m_saidOfCapture;
};

} // namespace glimra::desktop
