#include "desktop/services/bus_instance.h"

#include "desktop/services/bus.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace glimra::desktop {

namespace {

constexpr int kPatience = 2000;
constexpr int kNamePrimaryOwner = 1;
constexpr int kNameAlreadyOwner = 4;
constexpr unsigned kDoNotQueue = 4;

const QString kPath = QStringLiteral("/org/glimra/Glimra");
const QString kInterface = QStringLiteral("org.glimra.Glimra1");

/// A channel over a D-Bus connection of its own, on which no call waits longer than `kPatience`.
class BusChannel final : public InstanceChannel {
public:
    BusChannel(const QString& address, const QString& identity)
        : m_service(QStringLiteral("org.glimra.Glimra") +
                    (identity.isEmpty() ? QString() : QStringLiteral(".Settings") + identity)),
          m_name(QStringLiteral("glimra-instance-%1").arg(reinterpret_cast<quintptr>(this))),
          m_connection(openBusConnection(address, m_name)) {
        if (m_connection.isConnected())
            m_isUsable = askBus(QStringLiteral("Hello")).type() == QDBusMessage::ReplyMessage;
    }
    ~BusChannel() override {
        // The object is unregistered first: calls to it arrive on the connection's own thread and must find
        // it intact.
        m_connection.unregisterObject(kPath);
        QDBusConnection::disconnectFromPeer(m_name);
    }

    Standing claim(Handler handler) override {
        if (!m_isUsable)
            return Standing::Unusable;
        m_instance.emplace(std::move(handler));
        m_connection.registerObject(kPath, &*m_instance, QDBusConnection::ExportScriptableInvokables);
        const QDBusMessage reply =
            askBus(QStringLiteral("RequestName"), {m_service, QVariant::fromValue(kDoNotQueue)});
        if (reply.type() != QDBusMessage::ReplyMessage)
            return Standing::Unusable;
        const int standing = reply.arguments().value(0).toInt();
        return standing == kNamePrimaryOwner || standing == kNameAlreadyOwner ? Standing::First
                                                                              : Standing::Second;
    }

    std::string claimed() const override {
        return "the name " + m_service.toStdString() + " on the session bus";
    }

    std::optional<InstanceAnswer> send(const InstanceCommand& command) override {
        if (!m_isUsable)
            return std::nullopt;
        QDBusMessage message = QDBusMessage::createMethodCall(m_service, kPath, kInterface, "Perform");
        message.setAutoStartService(false);
        message << QString::fromStdString(toText(command));
        const QDBusMessage reply = m_connection.call(message, QDBus::Block, kPatience);
        if (reply.type() != QDBusMessage::ReplyMessage)
            return std::nullopt;
        return InstanceAnswer{reply.arguments().value(0).toBool(),
                              reply.arguments().value(1).toString().toStdString()};
    }

private:
    QDBusMessage askBus(const QString& method, const QVariantList& arguments = {}) {
        QDBusMessage message = busCall(method);
        message.setArguments(arguments);
        return m_connection.call(message, QDBus::Block, kPatience);
    }

    QString m_service;
    QString m_name;
    QDBusConnection m_connection;
    bool m_isUsable = false;
    std::optional<BusInstance> m_instance;
};

} // namespace

bool BusInstance::Perform(const QString& command, QString& text) {
    const std::optional<InstanceCommand> known = commandFromText(command.toStdString());
    const InstanceAnswer answer = known ? m_handler(*known) : InstanceAnswer{};
    text = QString::fromStdString(answer.text);
    return answer.isAccepted;
}

std::unique_ptr<InstanceChannel> makeBusChannel(const QString& busAddress, const QString& identity) {
    return std::make_unique<BusChannel>(busAddress, identity);
}

} // namespace glimra::desktop
