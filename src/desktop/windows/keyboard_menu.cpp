#include "desktop/windows/keyboard_menu.h"

#include "keyboards/drivers.h"

namespace glimra::desktop {

void furnishKeyboardMenu(QMenu* menu, const Choice& driver, const app::AppDelegate& delegate) {
    auto* const stale = menu->parentWidget()->window()->findChild<QAction*>("endStaleEffectsItem");
    auto* const drivers = new QMenu("&Light the Keyboard By", menu);
    drivers->setObjectName("driverMenu");
    menu->insertMenu(stale, drivers);
    std::vector<ChoiceRow> rows{{std::string(keyboards::kAutomaticDriver), "&Automatic"}};
    for (const keyboards::DriverRow& row : keyboards::driverRows())
        rows.push_back({std::string(row.name),
                        QString::fromUtf8(row.title.data(), static_cast<qsizetype>(row.title.size()))});
    addChoices(drivers, "driver-", rows, driver);
    drivers->insertSeparator(drivers->actions().at(1));

    // The setting is read when the application launches, which is after the windows are made.
    QObject::connect(menu, &QMenu::aboutToShow, stale,
                     [stale, &delegate] { stale->setChecked(delegate.state().options.endStaleEffects); });
}

} // namespace glimra::desktop
