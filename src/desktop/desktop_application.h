#pragma once

#include "app/app_delegate.h"
#include "desktop/desktop_platform.h"
#include "desktop/loop/exit_guard.h"
#include "desktop/loop/quit_requests.h"
#include "desktop/options.h"
#include "desktop/run_witness.h"
#include "desktop/running_instance.h"
#include "desktop/windows/theme.h"
#include "desktop/windows/tray.h"
#include "desktop/windows/windows.h"

namespace glimra::desktop {

/// The application on the desktop. Its members are created in the order in which it needs them and destroyed
/// in the opposite order. Needs a QApplication; main thread.
class DesktopApplication {
public:
    /// `instance` is the running instance. Throws std::system_error when a file named in the options cannot
    /// be used.
    DesktopApplication(const Options& options, RunningInstance& instance);
    ~DesktopApplication();

    /// Runs the application from launch to quit; call once. Returns the program's exit status.
    int run();

private:
    void tellTheLog();
    std::string appearance();
    void chooseAppearance(const std::string& name);
    void followCalibration();
    void quit() { m_machine.lifecycle.terminate(); }
    /// Accepts a command from another start of the program. Returns false when it is too late to carry it
    /// out.
    bool take(const InstanceCommand& command);
    void perform(const InstanceCommand& command);
    void sendToken(std::string_view token);
    void launch();
    platform::TerminateReply letGo();
    /// The process is about to end, in the middle of anything.
    void abandon();

    RunningInstance& m_instance;
    const bool m_isHidden;
    DesktopPlatform m_machine;
    RunWitnesses m_witnesses;
    app::AppDelegate m_delegate;
    DesktopTheme m_theme;
    Windows m_windows;
    Tray m_tray;
    QuitRequests m_quitRequests;
    ExitGuard m_exitGuard;
};

/// Runs the application. If an instance is already running, brings its windows to the front instead. Returns
/// the program's exit status. Throws as `DesktopApplication` does.
int runDesktopApplication(const Options& options);

} // namespace glimra::desktop
