#pragma once

#include "desktop/windows/keyboard_painter.h"
#include "desktop/windows/window_visibility.h"
#include "keyboards/virtual_keyboard.h"

#include <QBasicTimer>
#include <QWidget>

#include <functional>
#include <optional>

namespace glimra::desktop {

/// A live view of the virtual keyboard. Repaints the keys whose colors have changed, at most once in
/// `keyboards::kFrame`; while the colors stand still, or nobody can see it (hidden, minimized, on another
/// workspace, behind other windows), it does nothing at all.
class KeyboardView final : public QWidget {
public:
    /// `now` is the clock that the keyboard's effects run by. No call may reach `keyboard` after the view is
    /// gone.
    KeyboardView(keyboards::VirtualKeyboard& keyboard, std::function<keyboards::Time()> now,
                 QWidget* parent = nullptr);

    /// Shows these colors, dimmed, as long as nothing has been lit yet, in place of a dark keyboard.
    void showUntilLit(const keyboards::KeyColors& colors);
    /// Whether the keyboard has been lit since the view was made.
    bool hasBeenLit() const { return !m_untilLit; }

    /// The colors that it shows, or will show once painting comes round.
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
    keyboards::KeyColors colorsToShow(keyboards::Time now);

    keyboards::VirtualKeyboard& m_keyboard;
    std::function<keyboards::Time()> m_now;
    keyboards::KeyColors m_colors{};
    keyboards::Time m_colorsTakenAt{};

    QBasicTimer m_timer;
    keyboards::Time m_timerDue{};

    KeyboardPainter m_painter;
    bool m_isOutdated = true;
    std::optional<keyboards::KeyColors> m_untilLit;
    WindowVisibility m_visibility;
};

} // namespace glimra::desktop
