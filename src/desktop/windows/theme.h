#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QPalette>

#include <optional>
#include <string>

namespace glimra::desktop {

/// The application's own colors, for a desktop that gives it none.
QPalette themePalette(bool isDark);

/// Light or dark, as the user chose or as the desktop prefers while this lives: it is asked, and tells of
/// changes. Dark where nobody says anything. Where Qt's platform theme brings the desktop's own colors, those
/// stay. Main thread.
class DesktopTheme final : public QObject {
    Q_OBJECT

public:
    /// `bus` is where the desktop is asked.
    explicit DesktopTheme(QDBusConnection bus = QDBusConnection::sessionBus());

    /// "dark", "light", or whatever else stands for the desktop's preference.
    void choose(const std::string& appearance);

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void ask(QDBusConnection& bus);
    void apply() const;

    bool m_isOurs;
    /// Empty as long as the desktop has said nothing.
    std::optional<bool> m_desktopIsDark;
    std::string m_appearance;
};

} // namespace glimra::desktop
