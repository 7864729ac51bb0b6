#pragma once

#include "desktop/services/bus.h"
#include "desktop/services/unique_fd.h"

#include <QString>

#include <functional>
#include <memory>
#include <string>

namespace glimra::desktop {

/// Receives a text that explains why something does not work, for debugging; without a line end.
using Report = std::function<void(const std::string&)>;

/// The login manager (systemd-logind or a replacement) on the system bus. Main thread. Interface:
/// https://www.freedesktop.org/software/systemd/man/org.freedesktop.login1.html
class LoginManager final {
public:
    /// Calls `report` once if the login manager is of no help.
    LoginManager(Bus& systemBus, Report report);

    /// Requests an inhibitor lock and passes it to `onTaken` if and when it is granted. The lock lasts as
    /// long as its descriptor is open.
    void inhibit(const QString& what, const QString& mode, const QString& why, QObject* context,
                 std::function<void(UniqueFd)> onTaken);

    void observeSleep(QObject* context, std::function<void(bool isAboutToSleep)> handler);
    /// Reports when a login manager appears (a new one does not know the old one's locks) or disappears.
    void observePresence(QObject* context, Bus::ServiceHandler handler);

private:
    void reportOnce(const QDBusMessage& error);

    Bus& m_bus;
    Report m_report;
};

/// An inhibitor lock that is requested or held between `take` and `drop`.
class InhibitorLock final : public QObject {
public:
    /// `what` and `mode` are the login manager's terms, for example "sleep" and "delay".
    InhibitorLock(LoginManager& manager, QString what, QString mode);

    void take(const QString& why);
    void drop();

    bool isWanted() const { return m_request != nullptr; }

private:
    void ask();

    LoginManager& m_manager;
    const QString m_what;
    const QString m_mode;
    QString m_why;
    UniqueFd m_lock;
    /// Context of the pending request; null while no lock is wanted.
    std::unique_ptr<QObject> m_request;
};

} // namespace glimra::desktop
