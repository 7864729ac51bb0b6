#include "desktop/windows/paint_button.h"

#include "desktop/windows/keyboard_painter.h"

#include <QEnterEvent>
#include <QPainter>

namespace glimra::desktop {

PaintButton::PaintButton(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PaintButton::setColor(const QColor& color) {
    if (color == m_color)
        return;
    m_color = color;
    update();
}

QSize PaintButton::sizeHint() const {
    const int side = std::max(40, fontMetrics().height() * 2);
    return {side, side};
}

void PaintButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF outer = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    const QColor mark = palette().color(QPalette::Highlight);
    const QColor edge = palette().color(QPalette::WindowText);
    if (isChecked() || hasFocus() || underMouse()) {
        QPen pen(isChecked() ? mark : edge, isChecked() ? 3.0 : 1.0);
        if (hasFocus() && !isChecked())
            pen.setStyle(Qt::DashLine);
        painter.setPen(pen);
        painter.drawRoundedRect(outer, 8, 8);
    }
    QColor rim = edge;
    rim.setAlphaF(0.35F);
    painter.setPen(QPen(rim, 1.0));
    painter.setBrush(m_color);
    painter.drawRoundedRect(outer.adjusted(3.5, 3.5, -3.5, -3.5), 5, 5);
    QFont bold = font();
    bold.setBold(true);
    bold.setUnderline(hasFocus());
    painter.setFont(bold);
    painter.setPen(KeyboardPainter::legendOn(m_color));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

void PaintButton::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    update();
}

void PaintButton::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    update();
}

} // namespace glimra::desktop
