#pragma once

#include "desktop/services/sleep_watch.h"

#include <functional>

namespace glimra::desktop {

/// Detects when the displays are blanked or switched off while the machine runs.
class DisplaySleep {
public:
    using Teller = std::function<void(SleepSource source, bool asleep)>;

    virtual ~DisplaySleep() = default;
    /// Calls `tell` with the present state and then with each change. Call once, on the main thread.
    virtual void observe(Teller tell) = 0;
};

} // namespace glimra::desktop
