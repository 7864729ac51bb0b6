#pragma once

#include "app/app_delegate.h"
#include "desktop/options.h"
#include "desktop/windows/interface_binder.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::desktop {

/// Records a run of the application in a file. It sits between the application and its machine and is
/// notified of the steps of the run; by default it ignores them. Main thread.
class RunWitness {
public:
    virtual ~RunWitness() = default;

    /// The machine as the next witness or the application sees it.
    virtual const platform::Platform& platform() const = 0;

    /// Called before the launch, when the application and its windows exist.
    virtual void follow(app::AppDelegate& delegate, InterfaceBinder& binder) = 0;
    virtual void aboutToLaunch() {}
    virtual void launched() {}
    /// A message that did not come from the strip.
    virtual void token(std::string_view) {}
    virtual void aboutToQuit() {}
    /// Called after everything else in the application's run.
    virtual void ended() {}
};

/// All witnesses that the options ask for.
class RunWitnesses {
public:
    /// Throws std::system_error when a file cannot be written.
    RunWitnesses(const Options& options, const platform::Platform& machine);

    /// The machine as the application sees it.
    const platform::Platform& platform() const;

    template <class... Arguments, class... Given>
    void tell(void (RunWitness::*what)(Arguments...), Given&&... arguments) const {
        for (const std::unique_ptr<RunWitness>& witness : m_witnesses)
            (witness.get()->*what)(arguments...);
    }

private:
    platform::Platform m_machine;
    /// Each one receives what the previous one passes on.
    std::vector<std::unique_ptr<RunWitness>> m_witnesses;
};

/// Records the application's input as a script for `glimra-replay`.
std::unique_ptr<RunWitness> recordRun(const std::string& file, const platform::Platform& machine);
/// Records the application's output as JSON lines; `t` is the time of CLOCK_MONOTONIC.
std::unique_ptr<RunWitness> traceRun(const std::string& file, const platform::Platform& machine);

} // namespace glimra::desktop
