#include "desktop/windows/keyboard_menu.h"

#include "keyboards/drivers.h"

#include <utility>

namespace glimra::desktop {

namespace {

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

KeyboardMenu::KeyboardMenu(QMenu* menu, KeyboardChoice choice, const app::AppDelegate& delegate)
    : m_choice(std::move(choice)) {
    auto* const stale = menu->parentWidget()->window()->findChild<QAction*>("endStaleEffectsItem");
    auto* const drivers = new QMenu("&Light the Keyboard By", menu);
    drivers->setObjectName("driverMenu");
    menu->insertMenu(stale, drivers);
    addDriver(drivers, std::string(keyboards::kAutomaticDriver), "&Automatic");
    drivers->addSeparator();
    for (const keyboards::DriverRow& driver : keyboards::driverRows())
        addDriver(drivers, std::string(driver.name), toQString(driver.title));

    // The setting is read when the application launches, which is after the windows are made.
    connect(menu, &QMenu::aboutToShow, stale,
            [stale, &delegate] { stale->setChecked(delegate.state().options.endStaleEffects); });
}

void KeyboardMenu::addDriver(QMenu* menu, const std::string& name, const QString& title) {
    QAction* const item = menu->addAction(title);
    item->setObjectName("driver-" + QString::fromStdString(name));
    item->setCheckable(true);
    item->setChecked(name == m_choice.chosen());
    m_drivers.addAction(item);
    connect(item, &QAction::triggered, this, [this, name] { m_choice.choose(name); });
}

} // namespace glimra::desktop
