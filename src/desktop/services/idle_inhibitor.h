#pragma once

#include "desktop/services/login_manager.h"
#include "platform/system_services.h"

#include <optional>

namespace glimra::desktop {

/// Keeps the machine awake through the login manager, and through the desktop's screen saver service where
/// there is one: which of the two a desktop heeds differs. Main thread; asks and goes on.
class IdleInhibitor final : public QObject, public platform::ProcessActivity {
public:
    /// On `sessionBus` is the screen saver service.
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
    /// What the screen saver service calls our inhibition.
    std::optional<uint> m_cookie;
};

} // namespace glimra::desktop
