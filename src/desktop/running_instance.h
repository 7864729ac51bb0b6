#pragma once

#include "desktop/options.h"

namespace glimra::desktop {

/// Ensures that only one instance runs per settings file; further starts only send it commands. Main thread;
/// needs an application object.
class RunningInstance {
public:
    explicit RunningInstance(const Options& options);
    RunningInstance(const RunningInstance&) = delete;
    RunningInstance& operator=(const RunningInstance&) = delete;

    /// Makes this the running instance; returns false when there already is one. Returns true also when there
    /// is no way to find out.
    bool claim();
    /// What the running instance holds, for a sentence; empty unless the last claim has failed.
    const std::string& heldElsewhere() const { return m_heldElsewhere; }
    /// Sets the handler for commands from other starts, called from the event loop. Without a handler,
    /// commands are refused.
    void obey(InstanceChannel::Handler handler) { m_handler = std::move(handler); }
    /// Sends a command to the running instance and returns its answer; none when no instance answers.
    std::optional<InstanceAnswer> send(const InstanceCommand& command);

private:
    QString m_identity;
    std::string m_heldElsewhere;
    InstanceChannel::Handler m_handler;
    std::vector<std::unique_ptr<InstanceChannel>> m_channels;
};

} // namespace glimra::desktop
