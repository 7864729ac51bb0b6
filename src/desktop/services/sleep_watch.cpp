#include "desktop/services/sleep_watch.h"

#include <utility>

namespace glimra::desktop {

void SleepWatch::observe(std::function<void()> aboutToSleep, std::function<void()> screensDidWake) {
    m_aboutToSleep = std::move(aboutToSleep);
    m_screensDidWake = std::move(screensDidWake);
    tell();
}

void SleepWatch::set(SleepSource source, bool asleep) {
    if (asleep)
        m_sleeping.insert(source);
    else
        m_sleeping.erase(source);
    tell();
}

void SleepWatch::tell() {
    if (m_telling || !m_aboutToSleep)
        return;
    m_telling = true;
    // An observer may serve the run loop, and with it the next transition: each is told whole, one by one.
    while (m_toldAsleep != isAsleep()) {
        m_toldAsleep = isAsleep();
        m_toldAsleep ? m_aboutToSleep() : m_screensDidWake();
    }
    m_telling = false;
}

} // namespace glimra::desktop
