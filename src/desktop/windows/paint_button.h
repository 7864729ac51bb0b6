#pragma once

#include <QAbstractButton>

#include <algorithm>

namespace glimra::desktop {

/// A radio button that shows the colour it paints with, and its letter. A double click, Enter or F2 is a
/// click on the pencil of this colour, its `well`.
class PaintButton final : public QAbstractButton {
public:
    explicit PaintButton(QWidget* parent = nullptr);

    void setColor(const QColor& color);
    const QColor& color() const { return m_color; }

    void setWell(QAbstractButton* well) { m_well = well; }

    QSize sizeHint() const override;
    /// Of a swatch in a font of this size.
    static int sideFor(const QFontMetrics& metrics) { return std::max(40, metrics.height() * 2); }
    static void paintFace(QPainter& painter, const QRectF& face, const QColor& color,
                          const QPalette& palette);

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void openWell();

    QAbstractButton* m_well = nullptr;
    QColor m_color = Qt::black;
};

} // namespace glimra::desktop
