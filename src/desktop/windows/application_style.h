#pragma once

#include <QProxyStyle>

namespace glimra::desktop {

/// Where the light of the application's icon begins and ends, deep enough for white text on it.
QBrush accentBrush(const QRectF& area);

/// Qt's own style with one corner for buttons, fields and cards, flat scroll bars, check boxes that can be
/// seen on a dark background too, and a ring in the color of links around what has the keyboard. A frame
/// that shows a styled panel is a card.
class ApplicationStyle final : public QProxyStyle {
public:
    ApplicationStyle() : QProxyStyle("Fusion") {}

    using QProxyStyle::polish;
    /// A label or tool tip that does not say that its text is markup has plain text. Else the name of a
    /// keyboard, a folder or a server could become a heading, or a picture that is read from a pipe.
    void polish(QWidget* widget) override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
};

} // namespace glimra::desktop
