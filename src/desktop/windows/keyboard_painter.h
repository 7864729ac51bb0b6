#pragma once

#include "desktop/windows/key_lights.h"
#include "keyboards/model/keyboard_model.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QTransform>

#include <array>
#include <optional>

namespace glimra::desktop {

/// What surrounds the light: the parts of the keyboard that do not shine.
struct KeyboardTheme {
    /// What lies around the keyboard.
    QColor background;
    QColor bodyTop;
    QColor bodyBottom;
    QColor edge;
    QColor deck;
    QColor cap;
    /// A legend without light.
    QColor legend;

    /// The theme that goes with a window's background.
    static KeyboardTheme forBackground(const QColor& background);
};

/// How a key shows its color.
enum class KeyLook {
    Lit,     ///< as on a desk in the evening: a dark cap, a legend that shines, a halo around
    Painted, ///< the whole cap in the very color, so that it can be compared with a swatch
};

/// Draws the keyboard at one size: `lighting::kKeyboardLayout` with a body around it. All that does not
/// depend on colors is drawn once, when it is made; then a key costs the pixels that its light reaches. A
/// value.
class KeyboardPainter {
public:
    /// Width by height of the drawing.
    static double aspectRatio();

    /// Draws nothing.
    KeyboardPainter() = default;
    /// Draws into the largest rectangle of the right shape in the middle of `size`, the legends in `font` at
    /// sizes that fit. `pixelRatio` is the number of pixels in a point of `size`.
    KeyboardPainter(const QSize& size, double pixelRatio, const KeyboardTheme& theme, const QFont& font,
                    KeyLook look);

    /// Whether it was made, for this number of pixels in a point.
    bool isFor(double pixelRatio) const { return m_isMade && m_pixelRatio == pixelRatio; }
    /// Draws what lies in `exposed`. What lies outside of it has to be clipped by the caller.
    void paint(QPainter& painter, const QRegion& exposed, const keyboards::KeyColors& colors);

    // In points of `size`.
    /// Where anything can look different when the key at this place of the layout changes its color.
    QRect reachOfKey(std::size_t index) const;
    /// What is seen of a key: its cap.
    QRectF capOfKey(std::size_t index) const;
    std::optional<std::size_t> keyAt(const QPointF& point) const;
    /// A point of the drawing in the layout's own coordinates, y upwards.
    QPointF toLayout(const QPointF& point) const;

    /// The color, of two, in which a text is readable on `face`.
    static QColor legendOn(const QColor& face);
    /// What a cap that has `theme.cap` shows under a light, and its legend, both in the look of light.
    static QColor litCap(const KeyboardTheme& theme, keyboards::Rgb light);
    static QColor litLegend(const KeyboardTheme& theme, keyboards::Rgb light);

private:
    void drawBody(QPainter& painter, const KeyboardTheme& theme) const;
    void drawCap(QPainter& painter, std::size_t index, const KeyboardTheme& theme) const;
    /// `fromPixels` leads from the picture's pixels to where the painter shall draw them.
    void drawLegend(QPainter& painter, std::size_t index, const QColor& color,
                    const QTransform& fromPixels) const;
    KeyLight lightOf(std::size_t index, const QImage& caps) const;
    QTransform toPoints() const;

    double m_pixelRatio = 1.0;
    bool m_isMade = false;
    KeyLook m_look = KeyLook::Lit;
    /// From the layout with y downwards to pixels.
    QTransform m_toPixels;
    std::array<QFont, keyboards::kKeyCount> m_legendFonts;
    KeyLights m_lights;
    QImage m_dark;
    QImage m_picture;
};

} // namespace glimra::desktop
