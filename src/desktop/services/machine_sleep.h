#pragma once

#include "desktop/services/login_manager.h"

#include <functional>

namespace glimra::desktop {

/// Tells when the machine goes to sleep and when it has woken. It holds the sleep up while the teller runs,
/// so that what has to be done before can be done. Main thread.
class MachineSleep final : public QObject {
public:
    using Teller = std::function<void(bool asleep)>;

    MachineSleep(LoginManager& manager, Teller tell);

private:
    void prepareForSleep(bool isAboutToSleep);

    Teller m_tell;
    InhibitorLock m_delay;
};

} // namespace glimra::desktop
