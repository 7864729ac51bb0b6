#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <vector>

namespace glimra::desktop {

/// Addresses of the buses, from the environment or by convention; empty when there is none.
QString systemBusAddress();
QString sessionBusAddress();
/// Where there is no session bus, keeps Qt from starting one, too, which would outlive this program. Programs
/// that are started from here are free to (process.h). Must be called before there is an application object.
void startNoBus();

/// A connection that does not wait for the bus to give it a name. Without an address there is none.
QDBusConnection openBusConnection(const QString& address, const QString& name);
/// A call of a method of the bus itself.
QDBusMessage busCall(const QString& method);

/// A connection of our own to a message bus. No call blocks: without a bus, every call is answered with an
/// error; a bus that never answers has no effect. Main thread.
///
/// Handlers are called from the event loop, as long as the context object given with them exists.
class Bus final : public QObject {
    Q_OBJECT

public:
    using MessageHandler = std::function<void(const QDBusMessage&)>;
    /// Called with whether the service exists, each time that it appears, disappears or changes its owner.
    using ServiceHandler = std::function<void(bool isThere)>;

    struct Signal {
        QString service;
        QString path;
        QString interface;
        QString member;
    };

    /// Tries to connect once.
    explicit Bus(const QString& address);
    ~Bus() override;

    /// Sends a method call; `onReply` gets its reply or error, once.
    void call(const QDBusMessage& message, QObject* context, MessageHandler onReply);
    /// Sends a message that needs no reply.
    void send(const QDBusMessage& message);

    /// Passes a service's signals to `onSignal`, but none that another program has sent in its name.
    /// Subscribe to each signal only once.
    void subscribe(const Signal& signal, QObject* context, MessageHandler onSignal);
    /// Reports changes of a service from now on. When the bus is lost, so are its services.
    void watchService(const QString& service, QObject* context, ServiceHandler onChange);

private Q_SLOTS:
    void receive(const QDBusMessage& signal);
    void changeOwner(const QDBusMessage& signal);
    void lose();

private:
    struct Subscription {
        Signal signal;
        QPointer<QObject> context;
        MessageHandler handler;
    };
    struct Watch {
        QString service;
        QPointer<QObject> context;
        ServiceHandler handler;
    };

    void greet();
    void addMatch(const QString& rule);
    void follow(const QString& service);
    void setOwner(const QString& service, const QString& owner);

    QString m_name;
    QDBusConnection m_connection;
    /// The unique bus name of each service that is followed; empty while the service does not exist.
    QHash<QString, QString> m_owners;
    std::vector<Subscription> m_subscriptions;
    std::vector<Watch> m_watches;
};

} // namespace glimra::desktop
