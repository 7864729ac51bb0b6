#include "desktop/windows/quiet_button.h"

#include "desktop/windows/application_style.h"

#include <QFocusEvent>
#include <QPainter>
#include <QPainterPath>

namespace glimra::desktop {

namespace {

constexpr int kSidePadding = 10;
constexpr int kPadding = 5;
constexpr int kMarkGap = 6;

QColor colorOf(Mark mark, const QPalette& palette) {
    const bool isDark = palette.color(QPalette::Window).lightness() < 128;
    switch (mark) {
    case Mark::Open:
        return palette.color(QPalette::PlaceholderText);
    case Mark::Partly:
        return isDark ? "#f0b64a" : "#9a6200";
    case Mark::Good:
        return isDark ? "#3fcf85" : "#157a45";
    case Mark::Bad:
        return isDark ? "#ff7b72" : "#c02b22";
    }
    return {};
}

} // namespace

QPixmap markPicture(Mark mark, const QPalette& palette, int side, double ratio) {
    QPixmap picture(QSize(side, side) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / 16.0, side / 16.0);
    const QColor color = colorOf(mark, palette);
    painter.setPen(QPen(color, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (mark == Mark::Good)
        painter.setBrush(color);
    painter.drawEllipse(QRectF(1.5, 1.5, 13, 13));
    painter.setBrush(Qt::NoBrush);
    if (mark == Mark::Good) {
        painter.setPen(QPen(palette.color(QPalette::Base), 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF{{4.8, 8.3}, {7.1, 10.6}, {11.3, 5.8}});
    } else if (mark == Mark::Partly) {
        painter.setBrush(color);
        painter.drawEllipse(QPointF(8, 8), 2.4, 2.4);
    } else if (mark == Mark::Bad) {
        painter.drawLine(QPointF(8, 4.6), QPointF(8, 8.6));
        painter.drawPoint(QPointF(8, 11.4));
    }
    return picture;
}

QuietButton::QuietButton(QWidget* parent) : QPushButton(parent) {
    setAttribute(Qt::WA_Hover);
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void QuietButton::setMark(Mark mark) {
    if (m_mark == mark)
        return;
    m_mark = mark;
    updateGeometry();
    update();
}

int QuietButton::markRoom() const {
    return m_mark ? fontMetrics().height() + kMarkGap : 0;
}

QSize QuietButton::sizeHint() const {
    const QSize text = fontMetrics().size(Qt::TextShowMnemonic, this->text());
    return {std::max(text.width(), fontMetrics().height()) + markRoom() + 2 * kSidePadding,
            text.height() + 2 * kPadding};
}

void QuietButton::focusInEvent(QFocusEvent* event) {
    // A window that comes to the front gives back what it had.
    if (event->reason() != Qt::ActiveWindowFocusReason)
        m_hasRing = event->reason() != Qt::MouseFocusReason;
    QPushButton::focusInEvent(event);
}

void QuietButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& colors = palette();
    const bool isChosen = isCheckable() && isChecked();
    const QRectF ground = QRectF(rect()).adjusted(1, 1, -1, -1);
    const double radius = looks("chip") ? ground.height() / 2 : 6;
    QBrush fill = Qt::NoBrush;
    if (isChosen)
        fill = accentBrush(ground);
    else if (looks("chip") || underMouse()) {
        QColor tint = colors.color(QPalette::WindowText);
        tint.setAlphaF(isDown() ? 0.24F : (underMouse() && isEnabled() ? 0.16F : 0.09F));
        fill = tint;
    }
    painter.setPen(hasFocus() && m_hasRing
                       ? QPen(colors.color(isChosen ? QPalette::WindowText : QPalette::Link), 2)
                       : QPen(Qt::NoPen));
    painter.setBrush(fill);
    painter.drawRoundedRect(ground, radius, radius);

    QRect content = rect().adjusted(kSidePadding, 0, -kSidePadding, 0);
    if (m_mark) {
        const int side = fontMetrics().height();
        painter.drawPixmap(content.left(), (height() - side) / 2,
                           markPicture(*m_mark, colors, side, devicePixelRatioF()));
        content.setLeft(content.left() + markRoom());
    }
    const QPalette::ColorRole role = isChosen        ? QPalette::HighlightedText
                                     : looks("link") ? QPalette::Link
                                                     : QPalette::ButtonText;
    painter.setPen(colors.color(isEnabled() ? QPalette::Active : QPalette::Disabled, role));
    const int alignment = m_mark ? Qt::AlignLeft : Qt::AlignHCenter;
    painter.drawText(content, alignment | Qt::AlignVCenter | Qt::TextShowMnemonic, text());
}

} // namespace glimra::desktop
