#pragma once

#include <functional>
#include <set>

namespace glimra::desktop {

/// Sources that can report that nobody sees the screens.
enum class SleepSource { Machine, ScreenSaver, DisplayPower };

/// Combines the sources into one state: asleep while at least one of them says so. When a blanked screen is
/// followed by the machine's sleep, that is one sleep; it ends when both have ended.
class SleepWatch {
public:
    /// Sets the observers. If a sleep is already in progress, they are told at once.
    void observe(std::function<void()> aboutToSleep, std::function<void()> screensDidWake);

    /// Sets what a source says now; repeating it changes nothing. The observers have been called when this
    /// returns, except for a call from inside an observer: that one is reported after the observer returns.
    void set(SleepSource source, bool asleep);

    bool isAsleep() const { return !m_sleeping.empty(); }

private:
    void tell();

    std::function<void()> m_aboutToSleep;
    std::function<void()> m_screensDidWake;
    std::set<SleepSource> m_sleeping;
    bool m_toldAsleep = false;
    bool m_telling = false;
};

} // namespace glimra::desktop
