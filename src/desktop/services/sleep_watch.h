#pragma once

#include <functional>
#include <set>

namespace glimra::desktop {

/// Who can say that nobody sees the screens.
enum class SleepSource { Machine, ScreenSaver, DisplayPower };

/// Makes one sleep of all that its sources say: asleep while at least one of them says so. A blanked screen
/// that is followed by the machine's sleep is one sleep, and it ends when the last of the two does.
class SleepWatch {
public:
    /// Says who is told. A sleep that is already under way is told at once.
    void observe(std::function<void()> aboutToSleep, std::function<void()> screensDidWake);

    /// What a source says now; saying it again changes nothing. The observers have been called when this
    /// returns, but for a call from inside an observer: that one is told after it.
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
