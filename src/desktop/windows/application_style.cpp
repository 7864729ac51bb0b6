#include "desktop/windows/application_style.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

#include <algorithm>

namespace glimra::desktop {

namespace {

void paintCheckBox(QPainter& painter, const QStyleOption& option) {
    const bool isOn = option.state.testFlag(QStyle::State_On);
    const bool isEnabled = option.state.testFlag(QStyle::State_Enabled);
    const QPalette& palette = option.palette;
    const double side = std::min(option.rect.width(), option.rect.height()) - 1.0;
    QRectF box(0, 0, side, side);
    box.moveCenter(QRectF(option.rect).center());

    QColor rim = palette.color(isOn ? QPalette::Highlight : QPalette::WindowText);
    if (!isOn)
        rim.setAlphaF(option.state.testFlag(QStyle::State_MouseOver) ? 0.9F : 0.6F);
    QColor fill = palette.color(isOn ? QPalette::Highlight : QPalette::Base);
    if (option.state.testFlag(QStyle::State_Sunken))
        fill = fill.darker(110);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled ? 1.0 : 0.45);
    painter.setPen(QPen(rim, 1.0));
    painter.setBrush(fill);
    painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    if (isOn) {
        QPainterPath hook;
        const auto at = [&box](double x, double y) {
            return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
        };
        hook.moveTo(at(0.25, 0.53));
        hook.lineTo(at(0.43, 0.71));
        hook.lineTo(at(0.77, 0.31));
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette.color(QPalette::HighlightedText), box.width() / 7.0, Qt::SolidLine,
                            Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(hook);
    }
    painter.restore();
}

} // namespace

QSize ApplicationStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                         const QWidget* widget) const {
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    switch (type) {
    case CT_PushButton:
        return size + QSize(12, 4);
    case CT_ComboBox:
    case CT_LineEdit:
        return size + QSize(4, 4);
    default:
        return size;
    }
}

void ApplicationStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                   const QWidget* widget) const {
    const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element != CE_PushButton || button == nullptr || !option->state.testFlag(State_On))
        return QProxyStyle::drawControl(element, option, painter, widget);
    // The one that is chosen among several must be told from the others at a glance.
    QStyleOptionButton chosen = *button;
    chosen.palette.setColor(QPalette::Button, option->palette.color(QPalette::Highlight));
    chosen.palette.setColor(QPalette::ButtonText, option->palette.color(QPalette::HighlightedText));
    chosen.state.setFlag(State_On, false);
    QProxyStyle::drawControl(element, &chosen, painter, widget);
}

void ApplicationStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                     const QWidget* widget) const {
    if (element == PE_IndicatorCheckBox)
        paintCheckBox(*painter, *option);
    else
        QProxyStyle::drawPrimitive(element, option, painter, widget);
}

} // namespace glimra::desktop
