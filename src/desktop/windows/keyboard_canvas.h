#pragma once

#include "app/color_painter.h"
#include "desktop/windows/keyboard_painter.h"

#include <QWidget>

#include <functional>
#include <optional>

namespace glimra::desktop {

/// The keyboard on which a profile is painted: with the mouse, or with arrow keys and the space bar. It shows
/// what the application draws, and the application decides which key is hit and what colour it gets. The
/// canvas itself adds the points between two positions of a fast pointer.
class KeyboardCanvas final : public QWidget {
public:
    /// What the canvas works on; all of it outlives the canvas.
    struct Source {
        /// Tells the colour of every key.
        std::function<void(const app::ColorPainter::ShowKey&)> draw;
        /// What a key's colour is called.
        std::function<QString(lighting::KeyCode)> colorName;
    };

    explicit KeyboardCanvas(QWidget* parent = nullptr);

    void setSource(Source source);

    /// The pointer went down at, or was dragged to, a point of the layout.
    std::function<void(QPointF)> pressed;
    std::function<void(QPointF)> dragged;
    /// The right button went down on a key, by its place in the layout.
    std::function<void(std::size_t)> rightPressed;

    /// Has the application draw all keys.
    void redraw();

    const keyboards::KeyColors& shownColors() const { return m_colors; }
    /// Where a key is, for whoever wants to point at it; empty for an unknown one.
    QRectF faceOfKey(lighting::KeyCode code) const;

    // Keys by their place in the layout.
    using Index = std::optional<std::size_t>;
    QRectF faceAt(std::size_t index) const { return m_painter.capOfKey(index); }
    /// The key at a point of the widget.
    Index keyAt(const QPointF& point) const;
    /// What a key is called, and its colour.
    QString nameOfKey(std::size_t index) const;
    /// The key that arrow keys have moved to.
    std::size_t focusedIndex() const { return m_focused; }
    void focusKey(std::size_t index);
    /// One key as a stroke of its own, with the chosen colour.
    void paintKey(std::size_t index);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void dragTo(const QPointF& point);
    void setHovered(Index key);
    void moveFocus(int dx, int dy);
    void sayFocus();
    void prepareDrawing();
    /// Where the application must be told of a point: that point, or the key whose cap it is on.
    QPointF placeOf(const QPointF& point) const;
    void paintMark(QPainter& painter, std::size_t index, double width) const;

    Source m_source;
    keyboards::KeyColors m_colors{};
    KeyboardPainter m_painter;

    Index m_hovered;
    std::size_t m_focused = 0;
    /// Where the pointer was last, during a stroke.
    std::optional<QPointF> m_lastPoint;
};

} // namespace glimra::desktop
