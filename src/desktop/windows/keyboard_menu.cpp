#include "desktop/windows/keyboard_menu.h"

#include "keyboards/drivers.h"

namespace glimra::desktop {

void furnishKeyboardMenu(QMenu* menu, const Choice& driver, const app::AppDelegate& delegate) {
    const QWidget* const window = menu->parentWidget()->window();
    auto* const stale = window->findChild<QAction*>("endStaleEffectsItem");
    auto* const fast = window->findChild<QAction*>("fastResponseItem");
    auto* const drivers = new QMenu("&Light the Keyboard By", menu);
    drivers->setObjectName("driverMenu");
    menu->insertMenu(fast, drivers);
    std::vector<ChoiceRow> rows{{std::string(keyboards::kAutomaticDriver), "&Automatic"}};
    for (const keyboards::DriverRow& row : keyboards::driverRows())
        rows.push_back({std::string(row.name),
                        QString::fromUtf8(row.title.data(), static_cast<qsizetype>(row.title.size()))});
    addChoices(drivers, "driver-", rows, driver);
    drivers->insertSeparator(drivers->actions().at(1));

    // The settings are read when the application launches, which is after the windows are made.
    QObject::connect(menu, &QMenu::aboutToShow, stale, [stale, fast, &delegate] {
        stale->setChecked(delegate.state().options.endStaleEffects);
        fast->setChecked(delegate.state().readerFlags.fastResponse);
    });
}

} // namespace glimra::desktop
