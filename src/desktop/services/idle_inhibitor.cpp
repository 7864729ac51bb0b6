#include "desktop/services/idle_inhibitor.h"

#include <utility>

namespace glimra::desktop {

namespace {

const QString kScreenSaver = QStringLiteral("org.freedesktop.ScreenSaver");

QDBusMessage screenSaverCall(const QString& method) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        kScreenSaver, QStringLiteral("/org/freedesktop/ScreenSaver"), kScreenSaver, method);
    // Without a running service there is no screen saver to inhibit, so none is started.
    message.setAutoStartService(false);
    return message;
}

} // namespace

IdleInhibitor::IdleInhibitor(LoginManager& manager, Bus& sessionBus)
    : m_idle(manager, QStringLiteral("idle"), QStringLiteral("block")),
      m_sessionBus(sessionBus) {
    m_sessionBus.watchService(kScreenSaver, this, [this](bool isThere) {
        m_cookie.reset();
        if (isThere && m_isActive)
            inhibitScreenSaver();
    });
}

void IdleInhibitor::begin(std::string_view reason) {
    if (std::exchange(m_isActive, true))
        return;
    m_reason = QString::fromUtf8(reason.data(), static_cast<qsizetype>(reason.size()));
    m_idle.take(m_reason);
    inhibitScreenSaver();
}

void IdleInhibitor::end(std::string_view) {
    m_isActive = false;
    m_idle.drop();
    if (m_cookie)
        uninhibitScreenSaver(*std::exchange(m_cookie, std::nullopt));
}

void IdleInhibitor::inhibitScreenSaver() {
    QDBusMessage message = screenSaverCall(QStringLiteral("Inhibit"));
    message << QStringLiteral("Glimra") << m_reason;
    m_sessionBus.call(message, this, [this](const QDBusMessage& reply) {
        bool isCookie = false;
        const uint cookie = reply.arguments().value(0).toUInt(&isCookie);
        if (reply.type() != QDBusMessage::ReplyMessage || !isCookie)
            return;
        // The service counts inhibitions and each needs its cookie, so of two answers one is undone.
        if (m_isActive && !m_cookie)
            m_cookie = cookie;
        else
            uninhibitScreenSaver(cookie);
    });
}

void IdleInhibitor::uninhibitScreenSaver(uint cookie) {
    QDBusMessage message = screenSaverCall(QStringLiteral("UnInhibit"));
    message << cookie;
    m_sessionBus.send(message);
}

} // namespace glimra::desktop
