#pragma once

#include "app/app_delegate.h"
#include "desktop/windows/interface_binder.h"
#include "desktop/windows/keyboard_canvas.h"
#include "desktop/windows/slot_button.h"

#include <QLabel>
#include <QObject>

#include <vector>

namespace glimra::desktop {

/// The quick way to bind the slots of the action bars: a slot is chosen, and its key pressed on the real
/// keyboard or clicked on the picture; then comes the next slot. All of it is sent as choices in the pop-ups,
/// which can be shown instead. Points out keys that two slots have. Belongs to the window; main thread.
class ActionSlots final : public QObject {
public:
    /// Before the window is bound, for its commands.
    ActionSlots(QWidget* window, app::AppDelegate& delegate, InterfaceBinder& binder);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Slot {
        const profiles::ActionSlot* slot;
        SlotButton* button;
    };

    void show();
    void showPrompt();
    void showShared();
    void drawPicture(const app::ColorPainter::ShowKey& showKey) const;
    void showLists();
    void wait(bool isWaiting);
    bool takeKey(const QKeyEvent& event);
    /// To the chosen slot; the next one is chosen then.
    void assign(lighting::KeyCode key);
    std::size_t chosen() const;
    lighting::KeyCode keyOf(const Slot& slot) const;
    std::vector<const Slot*> slotsOf(lighting::KeyCode key) const;
    QString slotsText(lighting::KeyCode key) const;

    QWidget* m_window;
    app::AppDelegate& m_delegate;
    KeyboardCanvas* m_picture;
    std::vector<Slot> m_slots;
    bool m_isWaiting = false;
    /// A modifier that is held down alone so far.
    lighting::KeyCode m_modifier = lighting::kNoKey;
};

} // namespace glimra::desktop
