#pragma once

#include "desktop/windows/keyboard_painter.h"
#include "keyboards/virtual_keyboard.h"

#include <QBasicTimer>
#include <QPixmap>
#include <QWidget>

#include <functional>

namespace glimra::desktop {

/// A live view of the virtual keyboard. Repaints the keys whose colours have changed, at most once in
/// `keyboards::kFrame`; while the colours stand still, or nobody can see it, it does nothing at all.
class KeyboardView final : public QWidget {
public:
    /// `now` is the clock that the keyboard's effects run by. No call may reach `keyboard` after the view is
    /// gone.
    KeyboardView(keyboards::VirtualKeyboard& keyboard, std::function<keyboards::Time()> now,
                 QWidget* parent = nullptr);

    /// The colours that it shows, or will show once painting comes round.
    const keyboards::KeyColors& shownColors() const { return m_colors; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void takeColors();
    void scheduleAt(keyboards::Time moment);
    void prepareDrawing();
    void paintBodyOnce();

    keyboards::VirtualKeyboard& m_keyboard;
    std::function<keyboards::Time()> m_now;
    keyboards::KeyColors m_colors{};
    keyboards::Time m_colorsTakenAt{};

    QBasicTimer m_timer;
    keyboards::Time m_timerDue{};

    KeyboardPainter m_painter;
    /// The body at the view's size and resolution; null until it is painted.
    QPixmap m_body;
};

} // namespace glimra::desktop
