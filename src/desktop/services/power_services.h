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

/// All that the program has to do with the sleep of the machine and of its displays. Where a bus, a service
/// or an X server is missing it does what remains, and waits for none of them. Main thread.
class PowerServices {
public:
    /// Reports once, later, if there is no login manager to work with. Without `displays` their sleep goes
    /// unnoticed.
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
