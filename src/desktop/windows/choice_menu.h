#pragma once

#include <QMenu>
#include <QString>

#include <functional>
#include <string>
#include <vector>

namespace glimra::desktop {

/// One of several, by name.
struct Choice {
    std::function<std::string()> chosen;
    std::function<void(const std::string&)> choose;
};

struct ChoiceRow {
    std::string name;
    /// As the menu shows it.
    QString title;
};

/// Adds radio items, named `prefix` and the row's name. What is chosen is asked for whenever the menu opens.
void addChoices(QMenu* menu, const QString& prefix, const std::vector<ChoiceRow>& rows, const Choice& choice);

/// Makes radio items of those that are checkable: of what they offer, one is true.
void makeExclusive(QMenu* menu);

} // namespace glimra::desktop
