#include "desktop/windows/keyboard_painter.h"

#include "desktop/windows/key_caps.h"

#include <QFontMetricsF>
#include <QLinearGradient>

#include <algorithm>
#include <array>
#include <cmath>

namespace glimra::desktop {

using keyboards::Rgb;
using lighting::KeyRect;
using lighting::kKeyboardLayout;

namespace {

// All in points of the layout.
constexpr double kMargin = 12.0;
constexpr double kBodyRadius = 14.0;
constexpr double kHalo = 9.0;
constexpr double kLetterHeight = 13.0;
constexpr double kWordHeight = 9.0;
constexpr QSizeF kBarMark{28.0, 3.0};

constexpr double kWidth = lighting::kKeyboardWidth + 2 * kMargin;
constexpr double kHeight = lighting::kKeyboardHeight + 2 * kMargin;

// How much of a key's light is seen where, in the look of light.
// More on the face would leave a white legend without the contrast that text needs.
constexpr double kOnFace = 0.28;
constexpr double kOnSkirt = 0.50;
constexpr double kOnLegend = 1.0;
constexpr double kAroundCap = 0.55;

QRectF grown(const QRectF& rect, double by) {
    return rect.adjusted(-by, -by, by, by);
}

double luminance(const QColor& color) {
    // Relative luminance of an sRGB color, as WCAG 2 defines it.
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor withLight(const QColor& own, Rgb light, double share) {
    const auto channel = [share](int dark, int lit) {
        return std::min(255, static_cast<int>(std::lround(dark + lit * share)));
    };
    return {channel(own.red(), light.red), channel(own.green(), light.green),
            channel(own.blue(), light.blue)};
}

QString legendOf(const KeyRect& key) {
    return QString::fromUtf8(key.legend.data(), static_cast<qsizetype>(key.legend.size()));
}

/// A key's legend at a size in whole pixels, so that it is sharp: words smaller and lighter than letters, and
/// as small as the cap needs.
QFont legendFont(std::size_t index, double scale, QFont font) {
    const QString legend = legendOf(kKeyboardLayout[index]);
    const bool isWord = legend.size() > 1;
    font.setWeight(isWord ? QFont::Medium : QFont::DemiBold);
    constexpr int kTrial = 100;
    font.setPixelSize(kTrial);
    const double widest = std::max(1.0, QFontMetricsF(font).horizontalAdvance(legend));
    const double fitting = kTrial * (keyCaps()[index].face().width() - 0.5) * scale / widest;
    const double wanted = (isWord ? kWordHeight : kLetterHeight) * scale;
    font.setPixelSize(std::max(1, static_cast<int>(std::min(fitting, wanted))));
    return font;
}

void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(rect, radius, radius);
}

QLinearGradient downGradient(const QRectF& rect, const QColor& top, const QColor& bottom) {
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0.0, top);
    gradient.setColorAt(1.0, bottom);
    return gradient;
}

QColor gray(double share) {
    const int level = static_cast<int>(std::lround(255 * share));
    return {level, level, level};
}

} // namespace

KeyboardTheme KeyboardTheme::forBackground(const QColor& background) {
    if (background.lightness() < 128)
        return {background, "#262a32", "#1a1c21", "#3b404a", "#121317", "#1e2026", "#9aa0aa"};
    return {background, "#3d424b", "#2b2e35", "#59606b", "#1b1d21", "#1e2026", "#9aa0aa"};
}

double KeyboardPainter::aspectRatio() {
    return kWidth / kHeight;
}

KeyboardPainter::KeyboardPainter(const QSize& size, double pixelRatio, const KeyboardTheme& theme,
                                 const QFont& font, KeyLook look)
    : m_pixelRatio(pixelRatio),
      m_isMade(true),
      m_look(look) {
    const QSize pixels = (QSizeF(size) * pixelRatio).toSize();
    const double scale = std::min(pixels.width() / kWidth, pixels.height() / kHeight);
    m_toPixels.translate((pixels.width() - kWidth * scale) / 2, (pixels.height() - kHeight * scale) / 2);
    m_toPixels.scale(scale, scale);
    m_toPixels.translate(kMargin, kMargin);
    for (std::size_t index = 0; index < kKeyboardLayout.size(); ++index)
        m_legendFonts[index] = legendFont(index, scale, font);
    if (pixels.isEmpty())
        return;

    m_dark = QImage(pixels, QImage::Format_RGB32);
    m_dark.fill(theme.background);
    QImage caps(pixels, QImage::Format_Grayscale8);
    caps.fill(Qt::black);
    QPainter dark(&m_dark);
    QPainter shapes(&caps);
    for (QPainter* painter : {&dark, &shapes}) {
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setTransform(m_toPixels);
    }
    drawBody(dark, theme);
    for (std::size_t index = 0; index < kKeyboardLayout.size(); ++index) {
        drawCap(dark, index, theme);
        fillRounded(shapes, keyCaps()[index].outline, keyCaps()[index].radius, Qt::white);
    }
    shapes.end();
    for (std::size_t index = 0; index < kKeyboardLayout.size(); ++index)
        m_lights[index] = lightOf(index, caps);
    if (look == KeyLook::Lit)
        for (std::size_t index = 0; index < kKeyboardLayout.size(); ++index)
            drawLegend(dark, index, theme.legend, {});
    dark.end();
    m_picture = m_dark;
}

QTransform KeyboardPainter::toPoints() const {
    return m_toPixels * QTransform::fromScale(1 / m_pixelRatio, 1 / m_pixelRatio);
}

QRect KeyboardPainter::reachOfKey(std::size_t index) const {
    return toPoints().mapRect(grown(keyCaps()[index].outline, kHalo)).toAlignedRect();
}

QRectF KeyboardPainter::capOfKey(std::size_t index) const {
    return toPoints().mapRect(keyCaps()[index].outline);
}

std::optional<std::size_t> KeyboardPainter::keyAt(const QPointF& point) const {
    const QPointF place = toPoints().inverted().map(point);
    const auto& caps = keyCaps();
    const auto found = std::find_if(caps.begin(), caps.end(),
                                    [&place](const KeyCap& cap) { return cap.outline.contains(place); });
    if (found == caps.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - caps.begin());
}

QPointF KeyboardPainter::toLayout(const QPointF& point) const {
    const QPointF place = toPoints().inverted().map(point);
    return {place.x(), lighting::kKeyboardHeight - place.y()};
}

void KeyboardPainter::drawBody(QPainter& painter, const KeyboardTheme& theme) const {
    const QRectF body = grown({0, 0, lighting::kKeyboardWidth, lighting::kKeyboardHeight}, kMargin - 1.0);
    fillRounded(painter, body, kBodyRadius, downGradient(body, theme.bodyTop, theme.bodyBottom));
    // The edge catches the light from above.
    painter.setPen(QPen(QBrush(downGradient(body, theme.edge, theme.bodyBottom.darker(120))), 1.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(body, kBodyRadius, kBodyRadius);
    // The caps stand in a sunken field.
    for (const KeyCap& cap : keyCaps())
        fillRounded(painter, grown(cap.outline, 2.6), cap.radius + 2.6, theme.deck);
}

void KeyboardPainter::drawCap(QPainter& painter, std::size_t index, const KeyboardTheme& theme) const {
    const KeyCap& cap = keyCaps()[index];
    // A painted cap has nothing of its own, so that only the color is seen.
    const bool isLit = m_look == KeyLook::Lit;
    fillRounded(painter, cap.outline, cap.radius,
                isLit ? QBrush(downGradient(cap.outline, theme.cap.darker(115), theme.cap.darker(150)))
                      : QBrush(Qt::black));
    if (isLit)
        fillRounded(painter, cap.face(), cap.radius - 1.0,
                    downGradient(cap.outline, theme.cap.lighter(116), theme.cap.darker(106)));
}

void KeyboardPainter::drawLegend(QPainter& painter, std::size_t index, const QColor& color,
                                 const QTransform& fromPixels) const {
    const KeyCap& cap = keyCaps()[index];
    painter.save();
    if (cap.light.width() * 2 < cap.outline.width()) {
        // A short light under a long bar: a mark says where it is.
        const QPointF half(kBarMark.width() / 2, kBarMark.height() / 2);
        painter.setTransform(m_toPixels * fromPixels);
        fillRounded(painter, {cap.light.center() - half, kBarMark}, kBarMark.height() / 2, color);
    } else if (const QString legend = legendOf(kKeyboardLayout[index]); !legend.isEmpty()) {
        // Text is sharp where nothing scales it.
        painter.setTransform(fromPixels);
        painter.setFont(m_legendFonts[index]);
        painter.setPen(color);
        painter.drawText(m_toPixels.mapRect(cap.face()), Qt::AlignCenter, legend);
    }
    painter.restore();
}

KeyLight KeyboardPainter::lightOf(std::size_t index, const QImage& caps) const {
    const KeyCap& cap = keyCaps()[index];
    KeyLight light;
    light.place =
        m_toPixels.mapRect(grown(cap.outline, kHalo)).toAlignedRect().intersected({{}, caps.size()});
    light.strength.resize(static_cast<std::size_t>(light.place.width()) *
                          static_cast<std::size_t>(light.place.height()));

    QImage own(light.place.size(), QImage::Format_Grayscale8);
    own.fill(Qt::black);
    const QTransform fromPixels = QTransform::fromTranslate(-light.place.left(), -light.place.top());
    const QTransform toOwn = m_toPixels * fromPixels;
    const bool isLit = m_look == KeyLook::Lit;
    QPainter painter(&own);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(toOwn);
    fillRounded(painter, cap.outline, cap.radius, isLit ? gray(kOnSkirt) : QColor(Qt::white));
    if (isLit) {
        fillRounded(painter, cap.face(), cap.radius - 1.0,
                    downGradient(cap.outline, gray(kOnFace * 1.08), gray(kOnFace * 0.92)));
        drawLegend(painter, index, gray(kOnLegend), fromPixels);
    }
    painter.end();

    const QTransform back = toOwn.inverted();
    std::uint8_t* next = light.strength.data();
    for (int y = 0; y < own.height(); ++y)
        for (int x = 0; x < own.width(); ++x) {
            double strength = own.constScanLine(y)[x];
            const double covered = caps.constScanLine(light.place.top() + y)[light.place.left() + x] / 255.0;
            if (isLit && covered < 1.0) {
                const double away = cap.distanceTo(back.map(QPointF(x + 0.5, y + 0.5))) / kHalo;
                const double halo = kAroundCap * std::pow(std::max(0.0, 1.0 - away), 2.0);
                strength += 255.0 * halo * (1.0 - covered);
            }
            *next++ = static_cast<std::uint8_t>(std::min(255L, std::lround(strength)));
        }
    return light;
}

void KeyboardPainter::paint(QPainter& painter, const QRegion& exposed, const keyboards::KeyColors& colors) {
    if (m_picture.isNull())
        return;
    painter.save();
    const QTransform fromPixels = QTransform::fromScale(1 / m_pixelRatio, 1 / m_pixelRatio);
    painter.setTransform(fromPixels);
    for (const QRect& part : exposed) {
        const QRect pixels = fromPixels.inverted().mapRect(QRectF(part)).toAlignedRect();
        paintLights(m_picture, m_dark, m_lights, colors, pixels);
        painter.drawImage(pixels.topLeft(), m_picture, pixels);
    }
    if (m_look == KeyLook::Painted) {
        painter.setRenderHint(QPainter::Antialiasing);
        for (std::size_t index = 0; index < kKeyboardLayout.size(); ++index)
            if (exposed.intersects(reachOfKey(index)))
                drawLegend(painter, index,
                           legendOn({colors[index].red, colors[index].green, colors[index].blue}),
                           fromPixels);
    }
    painter.restore();
}

QColor KeyboardPainter::litCap(const KeyboardTheme& theme, Rgb light) {
    // Where it is brightest, at its upper end.
    return withLight(theme.cap.lighter(116), light, kOnFace * 1.08);
}

QColor KeyboardPainter::litLegend(const KeyboardTheme& theme, Rgb light) {
    return withLight(theme.legend, light, kOnLegend);
}

QColor KeyboardPainter::legendOn(const QColor& face) {
    // One of the two has a contrast of at least 4.5 to any color.
    return luminance(face) + 0.05 < std::sqrt(1.05 * 0.05) ? Qt::white : Qt::black;
}

} // namespace glimra::desktop
