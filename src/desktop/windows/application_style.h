#pragma once

#include <QProxyStyle>

namespace glimra::desktop {

/// Qt's own style, with check boxes that can be seen on a dark background too, and with more room
/// around the texts of buttons.
class ApplicationStyle final : public QProxyStyle {
public:
    ApplicationStyle() : QProxyStyle("Fusion") {}

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

} // namespace glimra::desktop
