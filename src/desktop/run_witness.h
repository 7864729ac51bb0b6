#pragma once

#include "app/app_delegate.h"
#include "desktop/options.h"
#include "desktop/windows/interface_binder.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::desktop {

/// Writes down, in a file, what a run of the application does: it stands between the application and its
/// machine, and is told of the turns of its life. What a witness has no use for does nothing. Main thread.
class RunWitness {
public:
    virtual ~RunWitness() = default;

    /// The machine, as the next witness or the application sees it.
    virtual const platform::Platform& platform() const = 0;

    /// Before the launch, when there are an application and its windows.
    virtual void follow(app::AppDelegate& delegate, InterfaceBinder& binder) = 0;
    virtual void aboutToLaunch() {}
    virtual void launched() {}
    /// A message that did not come from the strip.
    virtual void token(std::string_view) {}
    virtual void aboutToQuit() {}
    /// After the application's last word.
    virtual void ended() {}
};

/// All that the options ask for.
class RunWitnesses {
public:
    /// Throws std::system_error when a file cannot be written.
    RunWitnesses(const Options& options, const platform::Platform& machine);

    /// The machine, as the application sees it.
    const platform::Platform& platform() const;

    template <class... Arguments, class... Given>
    void tell(void (RunWitness::*what)(Arguments...), Given&&... arguments) const {
        for (const std::unique_ptr<RunWitness>& witness : m_witnesses)
            (witness.get()->*what)(arguments...);
    }

private:
    platform::Platform m_machine;
    /// Each sees what the one before lets through.
    std::vector<std::unique_ptr<RunWitness>> m_witnesses;
};

/// A script of what comes in, for `glimra-replay`.
std::unique_ptr<RunWitness> recordRun(const std::string& file, const platform::Platform& machine);
/// The trace of what goes out, as JSON lines; `t` counts as CLOCK_MONOTONIC does.
std::unique_ptr<RunWitness> traceRun(const std::string& file, const platform::Platform& machine);

} // namespace glimra::desktop
