#include "desktop/windows/choice_menu.h"

#include <QActionGroup>

namespace glimra::desktop {

void addChoices(QMenu* menu, const QString& prefix, const std::vector<ChoiceRow>& rows,
                const Choice& choice) {
    auto* const group = new QActionGroup(menu);
    for (const ChoiceRow& row : rows) {
        QAction* const item = menu->addAction(row.title);
        item->setObjectName(prefix + QString::fromStdString(row.name));
        item->setCheckable(true);
        item->setChecked(row.name == choice.chosen());
        group->addAction(item);
        QObject::connect(item, &QAction::triggered, menu, [choice, name = row.name] { choice.choose(name); });
        QObject::connect(menu, &QMenu::aboutToShow, item,
                         [choice, item, name = row.name] { item->setChecked(name == choice.chosen()); });
    }
}

void makeExclusive(QMenu* menu) {
    auto* const group = new QActionGroup(menu);
    for (QAction* const item : menu->actions())
        if (item->isCheckable())
            group->addAction(item);
}

} // namespace glimra::desktop
