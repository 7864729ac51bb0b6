#include "desktop/windows/profile_chips.h"

#include "desktop/windows/flow_layout.h"
#include "screenlink/message_pump.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QShortcut>

#include <algorithm>

namespace glimra::desktop {

namespace {

constexpr int kEditorWidth = 150;

int profileOf(const QObject* chip) {
    return chip->property("tag").toInt();
}

/// The field in which a name is written. What becomes of it is told once, when it is left.
class NameEditor final : public QLineEdit {
public:
    NameEditor(QWidget* parent, std::function<void(const QString&)> take)
        : QLineEdit(parent),
          m_take(std::move(take)) {
        setAttribute(Qt::WA_DeleteOnClose);
        connect(this, &QLineEdit::editingFinished, this, [this] { leave(true); });
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape)
            leave(false);
        else
            QLineEdit::keyPressEvent(event);
    }

private:
    void leave(bool isTaken) {
        if (const auto take = std::exchange(m_take, nullptr)) {
            if (isTaken)
                take(text());
            close();
        }
    }

    std::function<void(const QString&)> m_take;
};

} // namespace

ProfileChips::ProfileChips(QWidget* container, ProfileNames& names)
    : QObject(container),
      m_container(container),
      m_names(names) {
    for (int profile = 1; profile <= static_cast<int>(m_chips.size()); ++profile) {
        auto* const chip = new QuietButton(container);
        m_chips[static_cast<std::size_t>(profile) - 1] = chip;
        chip->setObjectName(QString("profileChip%1").arg(profile));
        chip->setProperty("look", "chip");
        chip->setProperty("action", "showProfile:");
        chip->setProperty("tag", profile);
        chip->setCheckable(true);
        chip->installEventFilter(this);
        auto* const shortcut =
            new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | static_cast<Qt::Key>(Qt::Key_0 + profile)),
                          container->window());
        shortcut->setWhatsThis(QString("Profile %1").arg(profile));
        connect(shortcut, &QShortcut::activated, chip, &QAbstractButton::click);
    }
    new FlowLayout(container, Qt::AlignLeft, 6);
}

void ProfileChips::follow(ProgramWatch& watch) {
    m_watch = &watch;
    watch.seen.observe([this](const StatusSnapshot&) { show(); });
    m_names.changed.observe([this] { show(); });
    // A click that was refused leaves the other chip filled.
    for (QuietButton* const chip : m_chips)
        connect(chip, &QAbstractButton::clicked, this, &ProfileChips::show, Qt::QueuedConnection);
    show();
}

bool ProfileChips::eventFilter(QObject* watched, QEvent* event) {
    const int profile = profileOf(watched);
    const bool isF2 =
        event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F2;
    if (isF2 || event->type() == QEvent::MouseButtonDblClick) {
        rename(profile);
        return true;
    }
    if (event->type() == QEvent::ContextMenu) {
        offerRenaming(profile, static_cast<QContextMenuEvent*>(event)->globalPos());
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void ProfileChips::show() {
    const StatusSnapshot& snapshot = m_watch->snapshot();
    for (QuietButton* const chip : m_chips) {
        const int profile = profileOf(chip);
        const QString name = m_names.name(profile);
        const bool isAutomatic = profile == screenlink::kAwayProfile && snapshot.switchesToProfile2;
        const QString automatic =
            isAutomatic ? "Glimra shows it by itself while the chat box is open or the game is not in front. "
                        : "";
        // A name may hold what would be a mnemonic.
        chip->setText(m_names.title(profile).replace('&', "&&") + (isAutomatic ? " · auto" : ""));
        chip->setChecked(profile == snapshot.profile);
        chip->setToolTip(QString("Show profile %1 (Ctrl+Shift+%1). %2F2 or a double click names it.")
                             .arg(profile)
                             .arg(automatic));
        chip->setAccessibleName(QString("Profile %1%2%3")
                                    .arg(profile)
                                    .arg(name.isEmpty() ? "" : ", " + name)
                                    .arg(isAutomatic ? ", automatic" : ""));
        chip->updateGeometry();
    }
}

void ProfileChips::offerRenaming(int profile, const QPoint& place) {
    auto* const menu = new QMenu(m_container);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(menu->addAction("&Rename Profile…"), &QAction::triggered, this,
            [this, profile] { rename(profile); });
    menu->popup(place);
}

void ProfileChips::rename(int profile) {
    const QuietButton* const chip = this->chip(profile);
    auto* const editor = new NameEditor(m_container, [this, profile](const QString& name) {
        m_names.setName(profile, name);
        this->chip(profile)->setFocus();
    });
    editor->setObjectName("profileNameEditor");
    editor->setAccessibleName(QString("Name of profile %1").arg(profile));
    editor->setPlaceholderText(QString("Name of profile %1").arg(profile));
    editor->setMaxLength(ProfileNames::kLongest);
    editor->setText(m_names.name(profile));
    editor->selectAll();
    QRect place = chip->geometry();
    place.setWidth(std::max(place.width(), std::min(kEditorWidth, m_container->width())));
    place.moveRight(std::min(place.right(), m_container->width() - 1));
    editor->setGeometry(place);
    editor->show();
    editor->setFocus();
}

} // namespace glimra::desktop
