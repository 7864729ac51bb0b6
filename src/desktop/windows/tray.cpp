#include "desktop/windows/tray.h"

#include "desktop/windows/choice_menu.h"

#include <QGuiApplication>

namespace glimra::desktop {

Tray::Tray(InterfaceBinder& binder, app::AppDelegate& delegate, std::function<void()> quit)
    : m_delegate(delegate),
      m_icon(QGuiApplication::windowIcon()) {
    for (int profile = 1; profile <= static_cast<int>(lighting::kProfileCount); ++profile) {
        QAction* const item = m_menu.addAction(QString("Profile %1").arg(profile));
        item->setCheckable(true);
        QObject::connect(item, &QAction::triggered, &m_menu, [this, &binder, profile] {
            binder.send("showProfile:", app::ButtonTag{profile});
            showActiveProfile();
        });
        m_profiles.push_back(item);
    }
    makeExclusive(&m_menu);
    m_menu.addSeparator();
    QObject::connect(m_menu.addAction("Test Pattern"), &QAction::triggered, &m_menu,
                     [&binder] { binder.send("testLightsMI:"); });
    QObject::connect(m_menu.addAction("Reset"), &QAction::triggered, &m_menu,
                     [&binder] { binder.send("resetButton:"); });
    QObject::connect(m_menu.addAction("Show Glimra"), &QAction::triggered, &m_menu,
                     [this] { m_delegate.outlets().mainWindow.bringToFront(); });
    m_menu.addSeparator();
    QObject::connect(m_menu.addAction("Quit Glimra"), &QAction::triggered, &m_menu, std::move(quit));
    QObject::connect(&m_menu, &QMenu::aboutToShow, &m_menu, [this] { showActiveProfile(); });

    m_icon.setContextMenu(&m_menu);
    m_icon.setToolTip("Glimra");
    QObject::connect(&m_icon, &QSystemTrayIcon::activated, &m_menu,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger)
                             m_delegate.outlets().mainWindow.bringToFront();
                     });
    // Where there is no tray yet, it goes there once one comes.
    m_icon.show();
}

void Tray::showActiveProfile() {
    const int active = m_delegate.state().profile.activeColorProfile;
    for (std::size_t i = 0; i < m_profiles.size(); ++i)
        m_profiles[i]->setChecked(static_cast<int>(i) + 1 == active);
}

} // namespace glimra::desktop
