#include "desktop/services/power_services.h"

#include <utility>

namespace glimra::desktop {

PowerServices::PowerServices(std::unique_ptr<DisplaySleep> displays, Report report)
    : m_loginManager(m_systemBus, std::move(report)),
      m_machine(m_loginManager, [this](bool asleep) { m_watch.set(SleepSource::Machine, asleep); }),
      m_displays(std::move(displays)) {
    if (m_displays)
        m_displays->observe([this](SleepSource source, bool asleep) { m_watch.set(source, asleep); });
}

void PowerServices::observeSleep(std::function<void()> aboutToSleep, std::function<void()> screensDidWake) {
    m_watch.observe(std::move(aboutToSleep), std::move(screensDidWake));
}

} // namespace glimra::desktop
