#include "desktop/windows/paint_button.h"

#include "desktop/windows/keyboard_painter.h"

#include <QEnterEvent>
#include <QKeyEvent>
#include <QMouseEvent>
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
    const int side = sideFor(fontMetrics());
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
    paintFace(painter, outer.adjusted(3.5, 3.5, -3.5, -3.5), m_color, palette());
    QFont bold = font();
    bold.setBold(true);
    bold.setUnderline(hasFocus());
    painter.setFont(bold);
    painter.setPen(KeyboardPainter::legendOn(m_color));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

void PaintButton::paintFace(QPainter& painter, const QRectF& face, const QColor& color,
                            const QPalette& palette) {
    QColor rim = palette.color(QPalette::WindowText);
    rim.setAlphaF(0.35F);
    painter.setPen(QPen(rim, 1.0));
    painter.setBrush(color);
    painter.drawRoundedRect(face, 5, 5);
}

void PaintButton::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        openWell();
}

void PaintButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F2 || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        openWell();
    else
        QAbstractButton::keyPressEvent(event);
}

void PaintButton::openWell() {
    if (m_well != nullptr)
        m_well->click();
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
