#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QPalette>

namespace glimra::desktop {

/// The application's own colours, for a desktop that gives it none.
QPalette themePalette(bool isDark);

/// Follows the desktop between light and dark while it lives. Where Qt's platform theme brings the desktop's
/// own colours, those stay; otherwise the desktop is asked for its preference, and again when it changes.
class DesktopTheme final : public QObject {
    Q_OBJECT

public:
    /// `bus` is where the desktop is asked.
    explicit DesktopTheme(QDBusConnection bus = QDBusConnection::sessionBus());

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
};

} // namespace glimra::desktop
