#pragma once

#include "desktop/services/login_manager.h"
#include "platform/system_services.h"

#include <optional>

namespace glimra::desktop {

/// Keeps the machine awake through the login manager and, if it exists, the desktop's screen saver service;
/// desktops differ in which of the two they obey. Main thread; never waits for an answer.
class IdleInhibitor final : public QObject, public platform::ProcessActivity {
public:
    /// The screen saver service is on `sessionBus`.
    IdleInhibitor(LoginManager& manager, Bus& sessionBus);

    void begin(std::string_view reason) override;
    void end(std::string_view reason) override;

private:
    void inhibitScreenSaver();
    void uninhibitScreenSaver(uint cookie);

    InhibitorLock m_idle;
    Bus& m_sessionBus;
    QString m_reason;
    bool m_isActive = false;
    /// The screen saver service's id of our inhibition.
    std::optional<uint> m_cookie;
};

} // namespace glimra::desktop
