#pragma once

#include <QAbstractButton>

namespace glimra::desktop {

/// A radio button that shows the colour it paints with, and its letter.
class PaintButton final : public QAbstractButton {
public:
    explicit PaintButton(QWidget* parent = nullptr);

    void setColor(const QColor& color);
    const QColor& color() const { return m_color; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QColor m_color = Qt::black;
};

} // namespace glimra::desktop
