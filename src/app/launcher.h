#pragma once

#include "app/outlets.h"
#include "app/window_closer.h"
#include "events/event_state.h"
#include "platform/bundle.h"
#include "platform/message_log.h"
#include "platform/stored_values.h"
#include "platform/system_services.h"
#include "platform/user_defaults.h"
#include "platform/window_system.h"
#include "platform/workspace.h"

namespace glimra::app {

/// Names of the applications that can be launched, as the scripting command knows them.
struct LauncherState {
    std::string WowAppName{platform::settings::kWowAppName.factory};
    std::string WowClassicAppName{platform::settings::kWowClassicAppName.factory};
    std::string BNAppName{platform::settings::kBNAppName.factory};
};

/// The names that are saved; those that are not, or that cannot be used, as they are at first.
LauncherState savedApplicationNames(const platform::SettingsReader& reader);

/// Brings up the game and its launcher, now or at each start. Main thread.
class Launcher {
public:
    struct Parts {
        platform::WindowSystem& windows;
        platform::UserDefaults& defaults;
        platform::SystemLog& systemLog;
        platform::ChildProcesses& childProcesses;
        platform::Modifiers& modifiers;
        platform::MessageLog& log;
        Outlets& outlets;
        WindowCloser& closer;
        LauncherState& names;
    };

    explicit Launcher(const Parts& parts);

    /// Takes the saved names and shows them.
    void loadApplicationNames();
    /// Marks the saved autorun choice and launches the application that was chosen.
    void autorun();

    /// From now on the application of this name is launched at each start, which is what `item` stands for;
    /// none for null.
    void setAutorun(platform::MenuItem Outlets::*item, std::string LauncherState::*application);
    /// Launches an application; with the Option key held, the names are edited instead.
    void launchApp(std::string LauncherState::*application);
    void editGameNames();
    /// The names are as the user wants them.
    void launchOptionsOK();

private:
    void activate(const std::string& name);

    Parts m_parts;
    platform::SettingsReader m_settings;
};

/// The argument with which the scripting command activates an application. The name stands in it as it is:
/// what is before and behind it is fixed, so that no name can be taken for anything else.
std::string activationScript(std::string_view name);

} // namespace glimra::app
