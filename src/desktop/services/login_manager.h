#pragma once

#include "desktop/services/bus.h"
#include "desktop/services/unique_fd.h"

#include <QString>

#include <functional>
#include <memory>
#include <string>

namespace glimra::desktop {

/// Takes a text for whoever looks for the reason why something does not work; without an end of line.
using Report = std::function<void(const std::string&)>;

/// The login manager (systemd-logind or what stands in for it) on the system bus. Main thread.
/// Interface: https://www.freedesktop.org/software/systemd/man/org.freedesktop.login1.html
class LoginManager final {
public:
    /// Reports once that there is no help from the login manager, if so.
    LoginManager(Bus& systemBus, Report report);

    /// Asks for an inhibitor lock, and hands it over if and when it comes. The lock lasts as long as its
    /// descriptor is open.
    void inhibit(const QString& what, const QString& mode, const QString& why, QObject* context,
                 std::function<void(UniqueFd)> onTaken);

    void observeSleep(QObject* context, std::function<void(bool isAboutToSleep)> handler);
    /// Another login manager has come (it knows nothing of the old one's locks), or the last one has gone.
    void observePresence(QObject* context, Bus::ServiceHandler handler);

private:
    void reportOnce(const QDBusMessage& error);

    Bus& m_bus;
    Report m_report;
};

/// One inhibitor lock, held or asked for between `take` and `drop`.
class InhibitorLock final : public QObject {
public:
    /// `what` and `mode` in the login manager's words ("sleep" and "delay", say).
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
    /// What an answer under way belongs to; null while no lock is wanted.
    std::unique_ptr<QObject> m_request;
};

} // namespace glimra::desktop
