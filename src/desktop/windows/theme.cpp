#include "desktop/windows/theme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace glimra::desktop {

namespace {

constexpr unsigned kPreferDark = 1;

const QString kService = "org.freedesktop.portal.Desktop";
const QString kPath = "/org/freedesktop/portal/desktop";
const QString kInterface = "org.freedesktop.portal.Settings";
const QString kGroup = "org.freedesktop.appearance";
const QString kKey = "color-scheme";

/// The setting comes in a variant, with the older call in two.
unsigned preferenceIn(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toUInt();
}

} // namespace

QPalette themePalette(bool isDark) {
    const QColor window = isDark ? "#202226" : "#f4f5f7";
    const QColor base = isDark ? "#2b2e34" : "#ffffff";
    const QColor text = isDark ? "#e8eaee" : "#1d2025";
    const QColor faint = isDark ? "#858b96" : "#83888f";
    QPalette palette(isDark ? "#33363c" : "#fbfbfc", window);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, isDark ? "#31343b" : "#eef0f3");
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Highlight, isDark ? "#3d84d8" : "#2f6fc4");
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, isDark ? "#6fb0ff" : "#1f5fb8");
    palette.setColor(QPalette::ToolTipBase, isDark ? "#2e3137" : "#ffffff");
    palette.setColor(QPalette::ToolTipText, text);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

DesktopTheme::DesktopTheme() {
    // A platform theme of the desktop has set what the user chose.
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORMTHEME"))
        return;
    QApplication::setPalette(themePalette(false));
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    QDBusMessage call =
        QDBusMessage::createMethodCall("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                                       "org.freedesktop.portal.Settings", "Read");
    call << QString("org.freedesktop.appearance") << QString("color-scheme");
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, 2000), qApp);
    QObject::connect(
        watcher, &QDBusPendingCallWatcher::finished, qApp, [](QDBusPendingCallWatcher* finished) {
            const QDBusPendingReply<QVariant> reply = *finished;
            if (reply.isValid())
                QApplication::setPalette(themePalette(preferenceIn(reply.value()) == kPreferDark));
            finished->deleteLater();
        });
}

void DesktopTheme::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group == kGroup && key == kKey)
        QApplication::setPalette(themePalette(preferenceIn(value.variant()) == kPreferDark));
}

} // namespace glimra::desktop
