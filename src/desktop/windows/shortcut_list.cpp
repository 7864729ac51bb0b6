#include "desktop/windows/shortcut_list.h"

#include <QAbstractButton>
#include <QAction>
#include <QShortcut>

namespace glimra::desktop {

namespace {

QString withoutMnemonic(QString text) {
    return text.remove('&').remove("…");
}

QString line(const QKeySequence& keys, const QString& what) {
    return QString("  %1%2\n").arg(keys.toString(QKeySequence::NativeText).leftJustified(20), what);
}

} // namespace

QString shortcutList(const std::vector<const QWidget*>& windows) {
    QString text;
    for (const QWidget* const window : windows) {
        QString lines;
        for (const QAction* const action : window->findChildren<QAction*>())
            for (const QKeySequence& keys : action->shortcuts())
                lines += line(keys, withoutMnemonic(action->text()));
        for (const auto* const button : window->findChildren<QAbstractButton*>())
            if (const QKeySequence keys = button->shortcut();
                !keys.toString().startsWith("Alt+") && !keys.isEmpty())
                lines += line(keys, withoutMnemonic(button->text()));
        // One without a name is another way to what is in the list.
        for (const QShortcut* const shortcut : window->findChildren<QShortcut*>())
            if (!shortcut->whatsThis().isEmpty())
                lines += line(shortcut->key(), shortcut->whatsThis());
        if (!lines.isEmpty())
            text += window->windowTitle() + "\n" + lines + "\n";
    }
    return text + "Everywhere\n" + line(QKeySequence("Tab"), "On to the next control; Shift+Tab goes back") +
           line(QKeySequence("Esc"), "Cancel") + line(QKeySequence("Alt"), "Open the menus by their letters");
}

} // namespace glimra::desktop
