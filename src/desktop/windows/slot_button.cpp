#include "desktop/windows/slot_button.h"

#include <QPainter>

namespace glimra::desktop {

SlotButton::SlotButton(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCheckable(true);
    setAutoExclusive(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SlotButton::showKey(const QString& key, const QColor& tint, bool isShared) {
    m_key = key;
    m_tint = tint;
    m_isShared = isShared;
    update();
}

void SlotButton::setWaiting(bool isWaiting) {
    m_isWaiting = isWaiting;
    update();
}

QSize SlotButton::sizeHint() const {
    const int line = fontMetrics().height();
    return {std::max(58, line * 4), line * 2 + 16};
}

void SlotButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF card = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    const QColor accent = palette().color(QPalette::Highlight);
    QColor rim = palette().color(QPalette::WindowText);
    rim.setAlphaF(underMouse() ? 0.7F : 0.3F);
    painter.setPen(QPen(isChecked() ? accent : rim, isChecked() ? 2.5 : 1.0,
                        hasFocus() && !isChecked() ? Qt::DashLine : Qt::SolidLine));
    painter.setBrush(palette().color(m_isWaiting ? QPalette::AlternateBase : QPalette::Base));
    painter.drawRoundedRect(card, 6, 6);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_tint);
    painter.drawRoundedRect(QRectF(card.left() + 8, card.bottom() - 5, card.width() - 16, 3), 1.5, 1.5);

    const int line = fontMetrics().height();
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(card.adjusted(6, 3, -6, 0), Qt::AlignLeft | Qt::AlignTop,
                     text() + (m_isShared ? "  ⚠" : ""));
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(palette().color(QPalette::WindowText));
    const QRectF below = card.adjusted(4, line + 2, -4, -6);
    const QString key = m_isWaiting ? QString("press") : m_key.isEmpty() ? QString("–") : m_key;
    painter.drawText(below, Qt::AlignCenter,
                     QFontMetrics(bold).elidedText(key, Qt::ElideRight, static_cast<int>(below.width())));
}

} // namespace glimra::desktop
