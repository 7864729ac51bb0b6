#include "desktop/windows/application_style.h"

#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

#include <algorithm>

namespace glimra::desktop {

namespace {

constexpr double kCorner = 6.0;
constexpr int kScrollBarWidth = 11;
constexpr int kLeastThumb = 28;

/// What lines are drawn with: seen on the window, quieter than text.
QColor lineColor(const QPalette& palette) {
    QColor color = palette.color(QPalette::WindowText);
    color.setAlphaF(0.28F);
    return color;
}

void paintPanel(QPainter& painter, const QRect& place, const QPen& pen, const QBrush& brush) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    painter.setBrush(brush);
    const double inset = pen.widthF() / 2;
    painter.drawRoundedRect(QRectF(place).adjusted(inset, inset, -inset, -inset), kCorner, kCorner);
    painter.restore();
}

QPen ringOr(const QStyleOption& option, QStyle::State ring, const QPen& line) {
    return option.state.testFlags(ring) ? QPen(option.palette.color(QPalette::Link), 2) : line;
}

void paintButton(QPainter& painter, const QStyleOption& option) {
    const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    const bool isDefault = button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton);
    const bool isEnabled = option.state.testFlag(QStyle::State_Enabled);
    QBrush brush = option.palette.color(QPalette::Button);
    if (option.state.testFlag(QStyle::State_On))
        brush = accentBrush(option.rect);
    else if (isEnabled && option.state.testFlag(QStyle::State_Sunken))
        brush = option.palette.color(QPalette::Mid);
    else if (isEnabled && option.state.testFlag(QStyle::State_MouseOver))
        brush = option.palette.color(QPalette::Midlight);
    const QPen line =
        isDefault ? QPen(option.palette.color(QPalette::Highlight), 1.5) : QPen(lineColor(option.palette), 1);
    paintPanel(painter, option.rect,
               ringOr(option, QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange, line), brush);
}

void paintScrollBar(QPainter& painter, const QStyleOption& option, QRect thumb) {
    QColor groove = option.palette.color(QPalette::WindowText);
    groove.setAlphaF(0.07F);
    const bool isMoved = option.state.testFlag(QStyle::State_Sunken);
    const double radius = (kScrollBarWidth - 4) / 2.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(groove);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(1, 1, -1, -1), radius, radius);
    painter.setBrush(option.palette.color(isMoved ? QPalette::Link : QPalette::PlaceholderText));
    painter.drawRoundedRect(QRectF(thumb).adjusted(2, 2, -2, -2), radius, radius);
    painter.restore();
}

/// The whole length of the bar is its groove; there are no arrows.
QRect scrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part) {
    const bool isFlat = bar.orientation == Qt::Horizontal;
    const int length = isFlat ? bar.rect.width() : bar.rect.height();
    const int range = bar.maximum - bar.minimum;
    const int thumb = range <= 0
                          ? length
                          : std::clamp(static_cast<int>(static_cast<qint64>(bar.pageStep) * length /
                                                        std::max<qint64>(1, qint64{range} + bar.pageStep)),
                                       std::min(kLeastThumb, length), length);
    const int start = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                      length - thumb, bar.upsideDown);
    const auto along = [&](int from, int to) {
        return isFlat ? QRect(bar.rect.left() + from, bar.rect.top(), to - from, bar.rect.height())
                      : QRect(bar.rect.left(), bar.rect.top() + from, bar.rect.width(), to - from);
    };
    switch (part) {
    case QStyle::SC_ScrollBarSlider:
        return along(start, start + thumb);
    case QStyle::SC_ScrollBarSubPage:
        return along(0, start);
    case QStyle::SC_ScrollBarAddPage:
        return along(start + thumb, length);
    case QStyle::SC_ScrollBarGroove:
        return along(0, length);
    default:
        return {};
    }
}

bool isCard(const QWidget* widget) {
    return widget != nullptr && widget->inherits("QFrame") && !widget->inherits("QAbstractScrollArea");
}

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

QBrush accentBrush(const QRectF& area) {
    QLinearGradient gradient(area.topLeft(), area.bottomRight());
    gradient.setColorAt(0, "#1479b8");
    gradient.setColorAt(1, "#7a45d6");
    return gradient;
}

void ApplicationStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    auto* const label = qobject_cast<QLabel*>(widget);
    if (label != nullptr && label->textFormat() == Qt::AutoText)
        label->setTextFormat(Qt::PlainText);
}

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
    chosen.palette.setColor(QPalette::ButtonText, option->palette.color(QPalette::HighlightedText));
    QProxyStyle::drawControl(element, &chosen, painter, widget);
}

void ApplicationStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                     const QWidget* widget) const {
    const QPen line(lineColor(option->palette), 1);
    switch (element) {
    case PE_IndicatorCheckBox:
        return paintCheckBox(*painter, *option);
    case PE_PanelButtonCommand:
        return paintButton(*painter, *option);
    case PE_PanelLineEdit:
        return paintPanel(*painter, option->rect, ringOr(*option, State_HasFocus, line),
                          option->palette.brush(QPalette::Base));
    case PE_Frame:
        return paintPanel(*painter, option->rect, line,
                          isCard(widget) ? option->palette.brush(QPalette::Base) : Qt::NoBrush);
    case PE_FrameFocusRect:
        return paintPanel(*painter, option->rect, QPen(option->palette.color(QPalette::Link), 1.5),
                          Qt::NoBrush);
    default:
        return QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void ApplicationStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                          QPainter* painter, const QWidget* widget) const {
    const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control == CC_ScrollBar && bar != nullptr)
        paintScrollBar(*painter, *option, scrollBarPart(*bar, SC_ScrollBarSlider));
    else
        QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect ApplicationStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                       SubControl part, const QWidget* widget) const {
    const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control == CC_ScrollBar && bar != nullptr)
        return scrollBarPart(*bar, part);
    return QProxyStyle::subControlRect(control, option, part, widget);
}

int ApplicationStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const {
    switch (metric) {
    case PM_ScrollBarExtent:
        return kScrollBarWidth;
    case PM_ScrollBarSliderMin:
        return kLeastThumb;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

} // namespace glimra::desktop
