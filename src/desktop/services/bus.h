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

/// Where the buses are reached, as the environment or the conventions say; empty when there is none.
QString systemBusAddress();
QString sessionBusAddress();

/// A connection of our own to a message bus, on which nothing ever waits: a bus that is missing answers every
/// call with an error, and one that never answers is not noticed. Main thread.
///
/// Everything that comes in is told from the event loop, as long as the context object given with the
/// handler lives.
class Bus final : public QObject {
    Q_OBJECT

public:
    using MessageHandler = std::function<void(const QDBusMessage&)>;
    /// Told whether the service is there, each time that it comes, goes, or changes hands.
    using ServiceHandler = std::function<void(bool isThere)>;

    struct Signal {
        QString service;
        QString path;
        QString interface;
        QString member;
    };

    /// Connects, at once or never.
    explicit Bus(const QString& address);
    ~Bus() override;

    /// Sends a method call and hands on its reply or error, once.
    void call(const QDBusMessage& message, QObject* context, MessageHandler onReply);
    /// Sends a message to which no answer is wanted.
    void send(const QDBusMessage& message);

    /// Hands on a service's signals, and only those that this service has sent. Each signal once only.
    void subscribe(const Signal& signal, QObject* context, MessageHandler onSignal);
    /// Tells what becomes of a service, from now on; a lost bus takes its services along.
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
    /// The unique name of each service that is followed; empty while nobody has it.
    QHash<QString, QString> m_owners;
    std::vector<Subscription> m_subscriptions;
    std::vector<Watch> m_watches;
};

} // namespace glimra::desktop
