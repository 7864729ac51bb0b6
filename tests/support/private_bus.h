#pragma once

#include "support/eventually.h"
#include "support/process.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QTemporaryDir>

#include <stdexcept>

namespace glimra::tests {

/// The application that every event loop needs.
inline void ensureApplication() {
    static int argumentCount = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(argumentCount, arguments);
}

/// A message bus of the test's own, with a connection to it that may wait for its answers.
class PrivateBus {
public:
    PrivateBus()
        : m_daemon("dbus-daemon", {"dbus-daemon", "--session", "--nofork", "--nopidfile",
                                   "--address=" + address().toStdString()}),
          m_connection(QString()) {
        const bool isUp = eventually([this] {
            m_connection = QDBusConnection::connectToBus(address(), name());
            if (!m_connection.isConnected())
                QDBusConnection::disconnectFromBus(name());
            return m_connection.isConnected();
        });
        if (!isUp)
            throw std::runtime_error("dbus-daemon does not start");
    }
    ~PrivateBus() { QDBusConnection::disconnectFromBus(name()); }

    QString address() const { return "unix:path=" + m_folder.filePath("bus"); }
    QDBusConnection& connection() { return m_connection; }

    QDBusMessage call(const QString& service, const QString& path, const QString& interface,
                      const QString& method, const QVariantList& arguments = {}) {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        return m_connection.call(message);
    }

private:
    QString name() const { return "test-" + m_folder.path(); }

    QTemporaryDir m_folder;
    ChildProcess m_daemon;
    QDBusConnection m_connection;
};

} // namespace glimra::tests
