#include "desktop/services/bus.h"

#include "desktop/services/no_bus.h"
#include "desktop/services/xdg_folders.h"

#include <QDBusError>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include <filesystem>
#include <system_error>
#include <utility>

namespace glimra::desktop {

namespace {

const QString kBusService = QStringLiteral("org.freedesktop.DBus");
const QString kBusPath = QStringLiteral("/org/freedesktop/DBus");

} // namespace

QDBusConnection openBusConnection(const QString& address, const QString& name) {
    // Opening a bus connection in Qt waits until the bus has given it a name. A peer connection only opens
    // the socket, so we can ask for the name without waiting.
    return address.isEmpty() ? QDBusConnection(name) : QDBusConnection::connectToPeer(address, name);
}

QDBusMessage busCall(const QString& method) {
    return QDBusMessage::createMethodCall(kBusService, kBusPath, kBusService, method);
}

QString systemBusAddress() {
    const QString address = qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
    return address.isEmpty() ? QStringLiteral("unix:path=/var/run/dbus/system_bus_socket") : address;
}

QString sessionBusAddress() {
    QString address = qEnvironmentVariable(kSessionBusVariable);
    // Autolaunch would start a bus daemon and wait for it, and no other program would be on that bus.
    if (address.contains(QLatin1String("autolaunch:")) || address == QLatin1String(kNoBusAddress))
        return {};
    const QByteArray folder = QByteArray::fromStdString(runtimeFolder().string());
    if (!address.isEmpty() || folder.isEmpty())
        return address;
    return QStringLiteral("unix:path=") + QString::fromLatin1(folder.toPercentEncoding("/")) +
           QStringLiteral("/bus");
}

void startNoBus() {
    const std::filesystem::path folder = runtimeFolder();
    std::error_code ignored;
    // The library finds that one by itself.
    const bool hasUsualBus = !folder.empty() && std::filesystem::is_socket(folder / "bus", ignored);
    if (sessionBusAddress().isEmpty() || (qEnvironmentVariableIsEmpty(kSessionBusVariable) && !hasUsualBus))
        qputenv(kSessionBusVariable, kNoBusAddress);
}

Bus::Bus(const QString& address)
    : m_name(QStringLiteral("glimra-%1").arg(reinterpret_cast<quintptr>(this))),
      m_connection(openBusConnection(address, m_name)) {
    if (m_connection.isConnected())
        greet();
}

Bus::~Bus() {
    QDBusConnection::disconnectFromPeer(m_name);
}

void Bus::greet() {
    // The bus serves only connections that have asked for a name. It handles messages in order, so calls may
    // follow before its answer.
    send(busCall(QStringLiteral("Hello")));
    m_connection.connect(QString(), kBusPath, kBusService, QStringLiteral("NameOwnerChanged"), this,
                         SLOT(changeOwner(QDBusMessage)));
    m_connection.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                         QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                         SLOT(lose()));
}

void Bus::call(const QDBusMessage& message, QObject* context, MessageHandler onReply) {
    if (!m_connection.isConnected()) {
        const auto error =
            QDBusMessage::createError(QDBusError::Disconnected, QStringLiteral("There is no bus"));
        QMetaObject::invokeMethod(
            context, [handler = std::move(onReply), error] { handler(error); }, Qt::QueuedConnection);
        return;
    }
    auto* const watcher = new QDBusPendingCallWatcher(m_connection.asyncCall(message), this);
    connect(
        watcher, &QDBusPendingCallWatcher::finished, context,
        [handler = std::move(onReply)](QDBusPendingCallWatcher* finished) { handler(finished->reply()); });
    // The watcher is always deleted, since a reply keeps the file descriptors that came with it. It may
    // finish twice, when the reply arrives while the watcher is being created.
    connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [](QDBusPendingCallWatcher* finished) {
        finished->disconnect();
        finished->deleteLater();
    });
}

void Bus::send(const QDBusMessage& message) {
    m_connection.send(message);
}

void Bus::subscribe(const Signal& signal, QObject* context, MessageHandler onSignal) {
    follow(signal.service);
    m_subscriptions.push_back({signal, context, std::move(onSignal)});
    m_connection.connect(QString(), signal.path, signal.interface, signal.member, this,
                         SLOT(receive(QDBusMessage)));
    addMatch(QStringLiteral("type='signal',sender='%1',path='%2',interface='%3',member='%4'")
                 .arg(signal.service, signal.path, signal.interface, signal.member));
}

void Bus::watchService(const QString& service, QObject* context, ServiceHandler onChange) {
    follow(service);
    m_watches.push_back({service, context, std::move(onChange)});
}

void Bus::receive(const QDBusMessage& signal) {
    const auto isMeant = [&signal](const Subscription& each) {
        return each.context && each.signal.path == signal.path() &&
               each.signal.interface == signal.interface() && each.signal.member == signal.member();
    };
    // The match rule lets only the service's signals through, but any program may address a signal to us
    // directly.
    const std::vector<Subscription> subscriptions = m_subscriptions;
    for (const Subscription& each : subscriptions)
        if (isMeant(each) && !signal.service().isEmpty() &&
            signal.service() == m_owners.value(each.signal.service))
            each.handler(signal);
}

void Bus::changeOwner(const QDBusMessage& signal) {
    const QVariantList arguments = signal.arguments();
    if (signal.service() == kBusService && arguments.size() == 3)
        setOwner(arguments[0].toString(), arguments[2].toString());
}

void Bus::lose() {
    for (const QString& service : m_owners.keys())
        setOwner(service, {});
}

void Bus::addMatch(const QString& rule) {
    QDBusMessage message = busCall(QStringLiteral("AddMatch"));
    message << rule;
    send(message);
}

void Bus::follow(const QString& service) {
    if (m_owners.contains(service))
        return;
    m_owners.insert(service, {});
    addMatch(QStringLiteral("type='signal',sender='%1',interface='%1',member='NameOwnerChanged',arg0='%2'")
                 .arg(kBusService, service));
    QDBusMessage question = busCall(QStringLiteral("GetNameOwner"));
    question << service;
    call(question, this, [this, service](const QDBusMessage& reply) {
        if (reply.type() == QDBusMessage::ReplyMessage)
            m_owners[service] = reply.arguments().value(0).toString();
    });
}

void Bus::setOwner(const QString& service, const QString& owner) {
    const auto known = m_owners.find(service);
    if (known == m_owners.end() || *known == owner)
        return;
    *known = owner;
    const std::vector<Watch> watches = m_watches;
    for (const Watch& each : watches)
        if (each.context && each.service == service)
            each.handler(!owner.isEmpty());
}

} // namespace glimra::desktop
