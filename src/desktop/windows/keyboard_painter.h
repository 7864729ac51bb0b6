#pragma once

#include "keyboards/model/keyboard_model.h"

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QRectF>
#include <QTransform>

#include <array>

namespace glimra::desktop {

/// What surrounds the light: the parts of the keyboard that do not shine.
struct KeyboardTheme {
    QColor bodyTop;
    QColor bodyBottom;
    QColor edge;
    QColor deck;
    QColor cap;

    /// The theme that goes with a window's background.
    static KeyboardTheme forBackground(const QColor& background);
};

/// Draws the keyboard at one size: `lighting::kKeyboardLayout` with a body around it. A value: what it draws
/// depends on nothing but how it was made and the colours given.
class KeyboardPainter {
public:
    /// Width by height of the drawing.
    static double aspectRatio();

    /// Draws into the largest rectangle of the right shape in the middle of `area`, the legends in `font` at
    /// sizes that fit.
    KeyboardPainter(const QRectF& area, const KeyboardTheme& theme, const QFont& font);

    /// The body, without keys.
    void paintBody(QPainter& painter) const;
    /// The keys that reach into `exposed`, with their light on the body. What lies outside of it has to be
    /// clipped by the caller.
    void paintKeys(QPainter& painter, const QRegion& exposed, const keyboards::KeyColors& colors) const;

    /// Where anything can look different when the key at this place of the layout changes its colour.
    QRect reachOfKey(std::size_t index) const;
    /// A point of the drawing in the layout's own coordinates, y upwards.
    QPointF toLayout(const QPointF& point) const;
    /// Where the key's rectangle of the layout is.
    QRectF faceOfKey(std::size_t index) const;

    /// What a cap looks like under a light, and the colour in which its legend is readable on it.
    static QColor litCap(const QColor& cap, keyboards::Rgb light);
    static QColor legendOn(const QColor& face);

private:
    void paintGlow(QPainter& painter, std::size_t index, keyboards::Rgb light) const;
    void paintCap(QPainter& painter, std::size_t index, keyboards::Rgb light) const;
    void paintLegend(QPainter& painter, std::size_t index, keyboards::Rgb light) const;

    QTransform m_toView;
    KeyboardTheme m_theme;
    std::array<QFont, keyboards::kKeyCount> m_legendFonts;
};

} // namespace glimra::desktop
