#include "desktop/services/login_manager.h"

#include <QDBusUnixFileDescriptor>

#include <utility>

#include <fcntl.h>

namespace glimra::desktop {

namespace {

const QString kLoginService = QStringLiteral("org.freedesktop.login1");
const QString kLoginPath = QStringLiteral("/org/freedesktop/login1");
const QString kLoginInterface = QStringLiteral("org.freedesktop.login1.Manager");

/// A copy of the descriptor in a reply that child processes do not inherit: a game that held the lock would
/// keep the machine awake after we have quit.
UniqueFd descriptorIn(const QDBusMessage& reply) {
    const auto descriptor = reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
    return UniqueFd(descriptor.isValid() ? ::fcntl(descriptor.fileDescriptor(), F_DUPFD_CLOEXEC, 0) : -1);
}

} // namespace

LoginManager::LoginManager(Bus& systemBus, Report report) : m_bus(systemBus), m_report(std::move(report)) {
}

void LoginManager::inhibit(const QString& what, const QString& mode, const QString& why, QObject* context,
                           std::function<void(UniqueFd)> onTaken) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(kLoginService, kLoginPath, kLoginInterface, QStringLiteral("Inhibit"));
    message << what << QStringLiteral("Glimra") << why << mode;
    m_bus.call(message, context, [this, handler = std::move(onTaken)](const QDBusMessage& reply) {
        if (UniqueFd lock = descriptorIn(reply))
            handler(std::move(lock));
        else
            reportOnce(reply);
    });
}

void LoginManager::observeSleep(QObject* context, std::function<void(bool isAboutToSleep)> handler) {
    m_bus.subscribe({kLoginService, kLoginPath, kLoginInterface, QStringLiteral("PrepareForSleep")}, context,
                    [handler = std::move(handler)](const QDBusMessage& signal) {
                        const QVariant argument = signal.arguments().value(0);
                        if (argument.metaType() == QMetaType::fromType<bool>())
                            handler(argument.toBool());
                    });
}

void LoginManager::observePresence(QObject* context, Bus::ServiceHandler handler) {
    m_bus.watchService(kLoginService, context, std::move(handler));
}

void LoginManager::reportOnce(const QDBusMessage& error) {
    if (const Report report = std::exchange(m_report, nullptr))
        report("No help from the login manager, so that the machine may fall asleep unasked and unnoticed: " +
               error.errorMessage().toStdString());
}

InhibitorLock::InhibitorLock(LoginManager& manager, QString what, QString mode)
    : m_manager(manager),
      m_what(std::move(what)),
      m_mode(std::move(mode)) {
    m_manager.observePresence(this, [this](bool isThere) {
        m_lock.reset();
        if (isThere && m_request)
            ask();
    });
}

void InhibitorLock::take(const QString& why) {
    m_why = why;
    ask();
}

void InhibitorLock::drop() {
    m_request.reset();
    m_lock.reset();
}

void InhibitorLock::ask() {
    m_request = std::make_unique<QObject>();
    m_manager.inhibit(m_what, m_mode, m_why, m_request.get(),
                      [this](UniqueFd lock) { m_lock = std::move(lock); });
}

} // namespace glimra::desktop
