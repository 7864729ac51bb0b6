#pragma once

#include "desktop/services/bus.h"
#include "desktop/services/display_sleep.h"
#include "desktop/services/idle_inhibitor.h"
#include "desktop/services/login_manager.h"
#include "desktop/services/machine_sleep.h"
#include "desktop/services/sleep_watch.h"

#include <functional>
#include <memory>

namespace glimra::desktop {

/// Everything the program does about the sleep of the machine and its displays. If a bus, a service or an X
/// server is missing, the rest still works; it never waits for any of them. Main thread.
class PowerServices {
public:
    /// Calls `report` once, later, if there is no usable login manager. Without `displays` their sleep is not
    /// noticed.
    PowerServices(std::unique_ptr<DisplaySleep> displays, Report report);

    /// See platform::Workspace.
    void observeSleep(std::function<void()> aboutToSleep, std::function<void()> screensDidWake);
    platform::ProcessActivity& processActivity() { return m_idleInhibitor; }

private:
    SleepWatch m_watch;
    Bus m_systemBus{systemBusAddress()};
    Bus m_sessionBus{sessionBusAddress()};
    LoginManager m_loginManager;
    IdleInhibitor m_idleInhibitor{m_loginManager, m_sessionBus};
    MachineSleep m_machine;
    std::unique_ptr<DisplaySleep> m_displays;
};

} // namespace glimra::desktop
