#pragma once

#include "desktop/options.h"

namespace glimra::desktop {

/// This program among its starts: one runs for each settings file, and the others only talk to it. Main
/// thread, with an application object.
class RunningInstance {
public:
    explicit RunningInstance(const Options& options);
    RunningInstance(const RunningInstance&) = delete;
    RunningInstance& operator=(const RunningInstance&) = delete;

    /// Becomes the running one; false when there is one already. Where there is no way to know, it becomes
    /// it, too.
    bool claim();
    /// Commands for the running one go to `handler`, from the event loop; to nobody while there is none.
    void obey(InstanceChannel::Handler handler) { m_handler = std::move(handler); }
    /// Tells the running one; false when nobody is there who does it.
    bool send(const InstanceCommand& command);

private:
    QString m_identity;
    InstanceChannel::Handler m_handler;
    std::vector<std::unique_ptr<InstanceChannel>> m_channels;
};

} // namespace glimra::desktop
