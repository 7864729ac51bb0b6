#include "desktop/windows/theme.h"

#include "desktop/windows/application_style.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QStyle>

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
    const QColor faint = isDark ? "#9ba1ac" : "#686d75";
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
    // Of raised and sunken lines.
    palette.setColor(QPalette::Light, isDark ? "#3a3e45" : "#ffffff");
    palette.setColor(QPalette::Midlight, isDark ? "#34373d" : "#eceef1");
    palette.setColor(QPalette::Mid, isDark ? "#2a2c31" : "#cdd1d6");
    palette.setColor(QPalette::Dark, isDark ? "#17181b" : "#b3b8bf");
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

DesktopTheme::DesktopTheme(QDBusConnection bus) {
    // A platform theme of the desktop has set what the user chose.
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORMTHEME"))
        return;
    // The style's own check boxes cannot be seen on dark; a style of the desktop's choice is left alone.
    if (QApplication::style()->name() == "fusion")
        QApplication::setStyle(new ApplicationStyle);
    QApplication::setPalette(themePalette(false));
    if (!bus.isConnected())
        return;
    // A slot is only found by its signature once the types in it have names.
    qRegisterMetaType<QDBusVariant>("QDBusVariant");
    bus.connect(kService, kPath, kInterface, "SettingChanged", this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, "Read");
    call << kGroup << kKey;
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
