#pragma once

#include "desktop/options.h"

namespace glimra::desktop {

/// This program among its starts: one runs for each settings file, and the others only talk to it. Main
/// thread, with an application object.
class RunningInstance {
public:
    explicit RunningInstance(const Options& options);

    /// Becomes the running one, which is told commands from the event loop; false when there is one already.
    /// Where there is no way to know, it becomes it, too.
    bool claim(const InstanceChannel::Handler& handler);
    /// Tells the running one; false when nobody is there who does it.
    bool send(const InstanceCommand& command);

private:
    QString m_identity;
    std::vector<std::unique_ptr<InstanceChannel>> m_channels;
};

} // namespace glimra::desktop
