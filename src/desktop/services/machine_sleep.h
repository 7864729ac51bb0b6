#pragma once

#include "desktop/services/login_manager.h"

#include <functional>

namespace glimra::desktop {

/// Reports when the machine goes to sleep and when it has woken. It delays the sleep while the teller runs,
/// so that preparations can be completed. Main thread.
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
