#include "desktop/windows/theme.h"

#include "desktop/windows/application_style.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QPluginLoader>
#include <QStyle>

#include <algorithm>

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

/// Whether Qt's platform theme is one that brings the desktop's own colors. One that is named may be missing.
bool desktopBringsColors() {
    const QString name = qEnvironmentVariable("QT_QPA_PLATFORMTHEME").toLower();
    if (name.isEmpty())
        return false;
    if (name == "kde")
        return true;
    for (const QString& path : QCoreApplication::libraryPaths()) {
        const QDir folder(path + "/platformthemes");
        for (const QString& file : folder.entryList({"*.so"}, QDir::Files)) {
            const QJsonArray keys =
                QPluginLoader(folder.filePath(file)).metaData()["MetaData"].toObject()["Keys"].toArray();
            if (std::ranges::any_of(keys, [&name](const QJsonValue& key) {
                    return name.startsWith(key.toString(), Qt::CaseInsensitive);
                }))
                return true;
        }
    }
    return false;
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
    palette.setColor(QPalette::Highlight, isDark ? "#5468d6" : "#4a5cc8");
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, isDark ? "#9db1ff" : "#4450b8");
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

DesktopTheme::DesktopTheme(QDBusConnection bus) : m_isOurs(!desktopBringsColors()) {
    if (!m_isOurs)
        return;
    // A style of the desktop's choice is left alone.
    if (QApplication::style()->name() == "fusion")
        QApplication::setStyle(new ApplicationStyle);
    apply();
    if (bus.isConnected())
        ask(bus);
}

void DesktopTheme::ask(QDBusConnection& bus) {
    // A slot is only found by its signature once the types in it have names.
    qRegisterMetaType<QDBusVariant>("QDBusVariant");
    bus.connect(kService, kPath, kInterface, "SettingChanged", this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, "Read");
    call << kGroup << kKey;
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, 2000), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        const QDBusPendingReply<QVariant> reply = *finished;
        if (reply.isValid())
            m_desktopIsDark = preferenceIn(reply.value()) == kPreferDark;
        apply();
        finished->deleteLater();
    });
}

void DesktopTheme::choose(const std::string& appearance) {
    m_appearance = appearance;
    apply();
}

void DesktopTheme::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group != kGroup || key != kKey)
        return;
    m_desktopIsDark = preferenceIn(value.variant()) == kPreferDark;
    apply();
}

void DesktopTheme::apply() const {
    if (!m_isOurs)
        return;
    const bool isChosen = m_appearance == "dark" || m_appearance == "light";
    const QPalette palette = themePalette(isChosen ? m_appearance == "dark" : m_desktopIsDark.value_or(true));
    if (palette != QApplication::palette())
        QApplication::setPalette(palette);
}

} // namespace glimra::desktop
