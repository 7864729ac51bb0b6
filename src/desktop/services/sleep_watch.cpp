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
    // An observer may run the run loop and so receive the next transition; transitions are reported one after
    // the other.
    while (m_toldAsleep != isAsleep()) {
        m_toldAsleep = isAsleep();
        m_toldAsleep ? m_aboutToSleep() : m_screensDidWake();
    }
    m_telling = false;
}

} // namespace glimra::desktop
