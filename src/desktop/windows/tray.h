#pragma once

#include "app/app_delegate.h"
#include "desktop/windows/interface_binder.h"

#include <QMenu>
#include <QSystemTrayIcon>

#include <functional>

namespace glimra::desktop {

/// An icon in the desktop's tray, where it has one or gets one later: the nine profiles, the test pattern,
/// reset, the main window and quitting.
class Tray {
public:
    Tray(InterfaceBinder& binder, app::AppDelegate& delegate, std::function<void()> quit);

    const QMenu& menu() const { return m_menu; }
    /// Whether there is a tray that shows it now.
    static bool isThere() { return QSystemTrayIcon::isSystemTrayAvailable(); }

private:
    void showActiveProfile();

    app::AppDelegate& m_delegate;
    QMenu m_menu;
    std::vector<QAction*> m_profiles;
    QSystemTrayIcon m_icon;
};

} // namespace glimra::desktop
