#include "desktop/windows/action_slots.h"

#include "desktop/windows/key_name.h"
#include "desktop/windows/paint_tools.h"
#include "desktop/windows/physical_key.h"
#include "desktop/windows/qt_colors.h"
#include "lighting/keyboard_layout.h"

#include <QComboBox>
#include <QKeyEvent>

#include <algorithm>

namespace glimra::desktop {

namespace {

using lighting::KeyCode;

constexpr platform::Color kUnbound{0.13, 0.14, 0.16};

int barOf(const profiles::ActionSlot& slot) {
    return slot.number / 100;
}

platform::Color tintOf(int bar) {
    switch (bar) {
    case 1:
        return {0.24, 0.52, 0.85};
    case 5:
        return {0.15, 0.65, 0.40};
    default:
        return {0.62, 0.40, 0.85};
    }
}

QString nameOf(const profiles::ActionSlot& slot) {
    return QString("slot %1 of bar %2").arg(slot.number % 100).arg(barOf(slot));
}

bool isModifier(int key) {
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_AltGr ||
           key == Qt::Key_Meta;
}

} // namespace

ActionSlots::ActionSlots(QWidget* window, app::AppDelegate& delegate, InterfaceBinder& binder)
    : QObject(window),
      m_window(window),
      m_delegate(delegate),
      m_picture(dynamic_cast<KeyboardCanvas*>(window->findChild<QWidget*>("slotPicture"))) {
    for (const profiles::ActionSlot& slot : profiles::actionSlots()) {
        auto* const button = dynamic_cast<SlotButton*>(
            window->findChild<QAbstractButton*>(QString("slot%1").arg(slot.number)));
        button->installEventFilter(this);
        m_slots.push_back({&slot, button});
    }
    m_picture->setSource({.draw = [this](const auto& showKey) { drawPicture(showKey); },
                          .colorName = [this](KeyCode key) { return slotsText(key); }});
    m_picture->pressed = [this](QPointF point) {
        if (const auto index = keyAtPoint(point))
            assign(lighting::kKeyboardLayout[*index].code);
    };
    m_slots.front().button->setChecked(true);
    m_window->findChild<QWidget*>("slotLists")->hide();
    binder.setCommand("chooseSlot", [this] { show(); });
    binder.setCommand("unbindSlot", [this] { assign(lighting::kNoKey); });
    binder.setCommand("showLists", [this] { showLists(); });
    binder.sent.observe([this] {
        if (m_delegate.outlets().actionKeySetterWindow.visible.get())
            show();
    });
    show();
}

std::size_t ActionSlots::chosen() const {
    const auto slot =
        std::ranges::find_if(m_slots, [](const Slot& each) { return each.button->isChecked(); });
    return slot == m_slots.end() ? 0 : static_cast<std::size_t>(slot - m_slots.begin());
}

KeyCode ActionSlots::keyOf(const Slot& slot) const {
    return profiles::keyOfSlot(m_delegate.state().actionKeys, *slot.slot);
}

std::vector<const ActionSlots::Slot*> ActionSlots::slotsOf(KeyCode key) const {
    std::vector<const Slot*> found;
    for (const Slot& slot : m_slots)
        if (key != lighting::kNoKey && keyOf(slot) == key)
            found.push_back(&slot);
    return found;
}

QString ActionSlots::slotsText(KeyCode key) const {
    QStringList names;
    for (const Slot* const slot : slotsOf(key))
        names.append(nameOf(*slot->slot));
    return names.join(" and ");
}

void ActionSlots::show() {
    for (const Slot& slot : m_slots) {
        const KeyCode key = keyOf(slot);
        const bool isShared = slotsOf(key).size() > 1;
        const QString name = key == lighting::kNoKey ? QString() : plainKeyName(key);
        slot.button->showKey(name, toQColor(tintOf(barOf(*slot.slot))), isShared);
        slot.button->setAccessibleName(
            QString("Slot %1 of action bar %2: ").arg(slot.slot->number % 100).arg(barOf(*slot.slot)) +
            (name.isEmpty() ? "no key" : name) + (isShared ? ", which another slot has, too" : ""));
        slot.button->setToolTip(slot.button->accessibleName());
    }
    showPrompt();
    showShared();
    m_picture->redraw();
}

void ActionSlots::showPrompt() {
    const QString slot = nameOf(*m_slots[chosen()].slot);
    m_window->findChild<QLabel*>("slotPrompt")
        ->setText(m_isWaiting
                      ? QString("Press the key of %1, or click it in the picture. Escape ends.").arg(slot)
                      : QString("Click a slot, or press Enter on it, then press its key. A click on a key in "
                                "the picture gives it to %1.")
                            .arg(slot));
}

void ActionSlots::showShared() {
    QStringList sentences;
    for (const Slot& slot : m_slots) {
        const auto shared = slotsOf(keyOf(slot));
        if (shared.size() > 1 && shared.front() == &slot)
            sentences.append(
                QString("%1 is the key of %2.").arg(plainKeyName(keyOf(slot)), slotsText(keyOf(slot))));
    }
    auto* const note = m_window->findChild<QLabel*>("sharedKeys");
    note->setText(sentences.isEmpty() ? "No key has two slots." : "⚠ " + sentences.join(' '));
}

void ActionSlots::drawPicture(const app::ColorPainter::ShowKey& showKey) const {
    const KeyCode marked = keyOf(m_slots[chosen()]);
    for (std::size_t index = 0; index < lighting::kKeyboardLayout.size(); ++index) {
        const KeyCode key = lighting::kKeyboardLayout[index].code;
        const auto slots = slotsOf(key);
        platform::Color color = slots.empty() ? kUnbound : tintOf(barOf(*slots.front()->slot));
        if (slots.size() > 1)
            color = {1.0, 0.6, 0.0};
        if (key == marked)
            color = {0.9, 0.95, 1.0};
        showKey(index, color);
    }
}

void ActionSlots::showLists() {
    auto* const lists = m_window->findChild<QWidget*>("slotLists");
    const bool isShown = lists->isHidden();
    lists->setVisible(isShown);
    m_window->findChild<QWidget*>("slotTiles")->setVisible(!isShown);
    m_picture->setVisible(!isShown);
    m_window->findChild<QLabel*>("slotPrompt")->setVisible(!isShown);
    m_window->findChild<QWidget*>("unbindButton")->setVisible(!isShown);
    m_window->findChild<QAbstractButton*>("listsButton")
        ->setText(isShown ? "Show the &Keyboard" : "Choose from &Lists");
}

void ActionSlots::wait(bool isWaiting) {
    m_isWaiting = isWaiting;
    m_modifier = lighting::kNoKey;
    for (std::size_t i = 0; i < m_slots.size(); ++i)
        m_slots[i].button->setWaiting(isWaiting && i == chosen());
    showPrompt();
}

bool ActionSlots::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonRelease:
        // After the button itself has taken it.
        QMetaObject::invokeMethod(
            this, [this] { wait(true); }, Qt::QueuedConnection);
        return false;
    case QEvent::FocusOut:
        if (m_isWaiting && watched == m_slots[chosen()].button)
            wait(false);
        return false;
    case QEvent::ShortcutOverride:
        event->setAccepted(m_isWaiting);
        return m_isWaiting;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return takeKey(static_cast<QKeyEvent&>(*event));
    default:
        return QObject::eventFilter(watched, event);
    }
}

bool ActionSlots::takeKey(const QKeyEvent& event) {
    const bool isPress = event.type() == QEvent::KeyPress;
    if (!m_isWaiting) {
        const bool begins =
            event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter || event.key() == Qt::Key_Space;
        // On its release, so that it is not taken for the slot's key.
        if (begins && !isPress && !event.isAutoRepeat())
            wait(true);
        return begins;
    }
    // One press is one slot; a key that could have no light counts as none.
    if (event.isAutoRepeat())
        return true;
    const std::optional<KeyCode> key = physicalKey(event);
    if (isPress && event.key() == Qt::Key_Escape)
        wait(false);
    else if (key && isPress && isModifier(event.key()))
        // It may be part of a combination, of which the other key counts.
        m_modifier = *key;
    else if (key && (isPress || m_modifier == *key))
        assign(*key);
    return true;
}

void ActionSlots::assign(KeyCode key) {
    const std::size_t place = chosen();
    // Chosen in its pop-up, so that both ways of choosing show the same.
    const std::string_view title = lighting::displayNameOfKey(key).value_or("");
    auto* const list = m_window->findChild<QComboBox*>(QString("menu%1").arg(m_slots[place].slot->number));
    list->setCurrentIndex(
        list->findData(QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()))));
    Q_EMIT list->activated(list->currentIndex());
    const bool wasWaiting = m_isWaiting;
    const bool isLast = place + 1 == m_slots.size();
    SlotButton* const next = m_slots[isLast ? place : place + 1].button;
    next->setChecked(true);
    if (wasWaiting)
        next->setFocus();
    wait(wasWaiting && !isLast);
    show();
}

} // namespace glimra::desktop
