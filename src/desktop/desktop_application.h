#pragma once

#include "app/app_delegate.h"
#include "desktop/desktop_platform.h"
#include "desktop/loop/exit_guard.h"
#include "desktop/loop/quit_requests.h"
#include "desktop/options.h"
#include "desktop/run_witness.h"
#include "desktop/running_instance.h"
#include "desktop/user_interface.h"

namespace glimra::desktop {

/// The application on the desktop. Its members are created in the order in which it needs them and destroyed
/// in the opposite order. Needs a QApplication or, to run without windows, a QCoreApplication; main thread.
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
    void followCalibration();
    void quit() { m_machine.lifecycle.terminate(); }
    /// Answers a command from another start of the program.
    InstanceAnswer take(const InstanceCommand& command);
    InstanceAnswer reload();
    std::string status(bool asJson);
    void perform(const InstanceCommand& command);
    void sendToken(std::string_view token);
    void launch();
    platform::TerminateReply letGo();
    /// The process is about to end, in the middle of anything.
    void abandon();

    RunningInstance& m_instance;
    /// The driver is that of the command line, whatever the settings say.
    const bool m_keyboardIsGiven;
    DesktopPlatform m_machine;
    RunWitnesses m_witnesses;
    app::AppDelegate m_delegate;
    std::unique_ptr<UserInterface> m_interface;
    QuitRequests m_quitRequests;
    ExitGuard m_exitGuard;
};

/// Runs the application. If an instance is already running, brings its windows to the front instead, or takes
/// the place of one without windows. Returns the program's exit status. Throws as `DesktopApplication` does.
int runDesktopApplication(const Options& options);

} // namespace glimra::desktop
