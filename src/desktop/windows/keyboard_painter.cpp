#include "desktop/windows/keyboard_painter.h"

#include "lighting/keyboard_layout.h"

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
constexpr double kBorder = 14.0;
constexpr double kBodyRadius = 16.0;
constexpr double kSkirt = 3.0;
constexpr double kGlow = 7.0;
constexpr double kSkirtRadius = 5.0;
constexpr double kFaceRadius = 4.0;
constexpr double kDeckRadius = 7.0;
constexpr double kLetterHeight = 11.5;
constexpr double kWordHeight = 9.0;

constexpr double kWidth = lighting::kKeyboardWidth + 2 * kBorder;
constexpr double kHeight = lighting::kKeyboardHeight + 2 * kBorder;

constexpr lighting::KeyCode kSpaceKey = 0x39;
constexpr lighting::KeyCode kLogoKey = 0x209;
constexpr lighting::KeyCode kBadgeKey = 0x20A;

/// The light of the space bar sits in the middle of a bar that reaches from Alt to Alt.
constexpr double kSpaceBarLeft = 177.0;
constexpr double kSpaceBarRight = 359.0;

/// The layout counts y upwards from the bottom; painters count down.
QRectF downwards(double x, double y, double width, double height) {
    return {x, lighting::kKeyboardHeight - y - height, width, height};
}

QRectF lightOf(const KeyRect& key) {
    return downwards(key.x, key.y, key.width, key.height);
}

/// The top of the cap.
QRectF faceOf(const KeyRect& key) {
    if (key.code == kSpaceKey)
        return downwards(kSpaceBarLeft, key.y, kSpaceBarRight - kSpaceBarLeft, key.height);
    return lightOf(key);
}

QRectF grown(const QRectF& rect, double by) {
    return rect.adjusted(-by, -by, by, by);
}

double faceRadius(const KeyRect& key) {
    if (key.code == kLogoKey || key.code == kBadgeKey)
        return std::min(key.width, key.height) / 2.0;
    return kFaceRadius;
}

/// Sunken fields that the blocks of keys stand in.
const std::array<QRectF, 7> kDecks{
    grown(downwards(5, 56, 22, 153), 6),    // G1 to G5
    grown(downwards(100, 262, 123, 23), 6), // G6 to G9
    grown(downwards(46, 228, 485, 23), 6),  // Esc to F12
    grown(downwards(46, 54, 485, 155), 6),  // letters
    grown(downwards(553, 228, 89, 23), 6),  // Print Screen to Pause
    grown(downwards(552, 54, 89, 155), 6),  // Insert to the arrows
    grown(downwards(663, 54, 121, 155), 6), // keypad
};

double brightness(Rgb light) {
    return std::max({light.red, light.green, light.blue}) / 255.0;
}

QColor toQColor(Rgb light) {
    return {light.red, light.green, light.blue};
}

QColor mixed(const QColor& a, const QColor& b, double shareOfB) {
    const auto channel = [shareOfB](int from, int to) {
        return static_cast<int>(std::lround(from + (to - from) * shareOfB));
    };
    return {channel(a.red(), b.red()), channel(a.green(), b.green()), channel(a.blue(), b.blue())};
}

/// Relative luminance of an sRGB colour, as WCAG 2 defines it.
double luminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QString legendOf(const KeyRect& key) {
    return QString::fromUtf8(key.legend.data(), static_cast<qsizetype>(key.legend.size()));
}

/// A key's legend at a size in whole pixels, so that it is sharp: words smaller and lighter than letters, and
/// as small as the cap needs.
QFont legendFont(const KeyRect& key, double scale, QFont font) {
    const QString legend = legendOf(key);
    const bool isWord = legend.size() > 1;
    font.setWeight(isWord ? QFont::Normal : QFont::DemiBold);
    constexpr int kTrial = 100;
    font.setPixelSize(kTrial);
    const double widest = std::max(1.0, QFontMetricsF(font).horizontalAdvance(legend));
    const double fitting = kTrial * (key.width - 0.5) * scale / widest;
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

/// From the bare cap at both ends of the bar to the lit one over its light.
QLinearGradient barGradient(const QRectF& bar, const QRectF& light, const QColor& cap, const QColor& lit) {
    QLinearGradient gradient(bar.topLeft(), bar.topRight());
    const auto place = [&bar](double x) { return (x - bar.left()) / bar.width(); };
    gradient.setColorAt(0.0, cap);
    gradient.setColorAt(place(light.left()), lit);
    gradient.setColorAt(place(light.right()), lit);
    gradient.setColorAt(1.0, cap);
    return gradient;
}

} // namespace

KeyboardTheme KeyboardTheme::forBackground(const QColor& background) {
    if (background.lightness() < 128)
        return {"#2c2f35", "#1c1e22", "#4a4e56", "#141518", "#33363c"};
    return {"#4a4e55", "#34373d", "#6b7079", "#25272b", "#3f4349"};
}

double KeyboardPainter::aspectRatio() {
    return kWidth / kHeight;
}

KeyboardPainter::KeyboardPainter(const QRectF& area, const KeyboardTheme& theme, const QFont& font)
    : m_theme(theme) {
    const double scale = std::min(area.width() / kWidth, area.height() / kHeight);
    m_toView.translate(area.center().x() - kWidth * scale / 2, area.center().y() - kHeight * scale / 2);
    m_toView.scale(scale, scale);
    m_toView.translate(kBorder, kBorder);
    for (std::size_t index = 0; index < kKeyboardLayout.size(); ++index)
        m_legendFonts[index] = legendFont(kKeyboardLayout[index], scale, font);
}

QRect KeyboardPainter::reachOfKey(std::size_t index) const {
    return m_toView.mapRect(grown(faceOf(kKeyboardLayout[index]), kGlow + 1.0)).toAlignedRect();
}

QPointF KeyboardPainter::toLayout(const QPointF& point) const {
    const QPointF downwardsPoint = m_toView.inverted().map(point);
    return {downwardsPoint.x(), lighting::kKeyboardHeight - downwardsPoint.y()};
}

QRectF KeyboardPainter::faceOfKey(std::size_t index) const {
    return m_toView.mapRect(lightOf(kKeyboardLayout[index]));
}

void KeyboardPainter::paintBody(QPainter& painter) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(m_toView, true);
    const QRectF body = grown({0, 0, lighting::kKeyboardWidth, lighting::kKeyboardHeight}, kBorder - 1.0);
    fillRounded(painter, body, kBodyRadius, downGradient(body, m_theme.bodyTop, m_theme.bodyBottom));
    // The edge catches the light from above.
    QLinearGradient edge = downGradient(body, m_theme.edge, m_theme.bodyBottom.darker(130));
    painter.setPen(QPen(QBrush(edge), 1.2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(body, kBodyRadius, kBodyRadius);
    for (const QRectF& deck : kDecks)
        fillRounded(painter, deck, kDeckRadius, m_theme.deck);
    painter.restore();
}

void KeyboardPainter::paintKeys(QPainter& painter, const QRegion& exposed,
                                const keyboards::KeyColors& colors) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(m_toView, true);
    const auto forExposed = [&](auto paint) {
        for (std::size_t index = 0; index < kKeyboardLayout.size(); ++index)
            if (exposed.intersects(reachOfKey(index)))
                (this->*paint)(painter, index, colors[index]);
    };
    // All light on the body first, so that no key shines on its neighbour's cap.
    forExposed(&KeyboardPainter::paintGlow);
    forExposed(&KeyboardPainter::paintCap);
    painter.restore();
    forExposed(&KeyboardPainter::paintLegend);
}

void KeyboardPainter::paintGlow(QPainter& painter, std::size_t index, Rgb light) const {
    const KeyRect& key = kKeyboardLayout[index];
    QColor color = toQColor(light);
    constexpr int kSteps = 5;
    for (int step = 0; step < kSteps; ++step) {
        color.setAlphaF(static_cast<float>(0.1 * brightness(light)));
        const double growth = kGlow - (kGlow - kSkirt) * step / kSteps;
        fillRounded(painter, grown(lightOf(key), growth), faceRadius(key) + growth, color);
    }
}

void KeyboardPainter::paintCap(QPainter& painter, std::size_t index, Rgb light) const {
    const KeyRect& key = kKeyboardLayout[index];
    const QRectF face = faceOf(key);
    const QColor lit = litCap(m_theme.cap, light);
    if (key.code == kBadgeKey) {
        fillRounded(painter, face, faceRadius(key), lit);
        return;
    }
    const double radius = faceRadius(key);
    const bool isBar = key.code == kSpaceKey;
    const QColor side = mixed(m_theme.deck, isBar ? m_theme.cap : lit, 0.5);
    fillRounded(painter, grown(face, kSkirt), radius + kSkirtRadius - kFaceRadius,
                downGradient(face, side, side.darker(135)));
    if (isBar)
        fillRounded(painter, face, radius, barGradient(face, lightOf(key), m_theme.cap, lit));
    else
        fillRounded(painter, face, radius, downGradient(face, lit.lighter(106), lit.darker(108)));
}

void KeyboardPainter::paintLegend(QPainter& painter, std::size_t index, Rgb light) const {
    const KeyRect& key = kKeyboardLayout[index];
    if (key.legend.empty())
        return;
    painter.setFont(m_legendFonts[index]);
    painter.setPen(legendOn(litCap(m_theme.cap, light)));
    painter.drawText(m_toView.mapRect(grown(faceOf(key), kSkirt)), Qt::AlignCenter, legendOf(key));
}

QColor KeyboardPainter::litCap(const QColor& cap, Rgb light) {
    const double share = brightness(light);
    const auto channel = [share](int own, int lit) {
        return std::min(255, static_cast<int>(std::lround(own * (1.0 - share) + lit)));
    };
    return {channel(cap.red(), light.red), channel(cap.green(), light.green),
            channel(cap.blue(), light.blue)};
}

QColor KeyboardPainter::legendOn(const QColor& face) {
    // One of the two has a contrast of at least 4.3 to any colour.
    const QColor light("#f4f6f8");
    const QColor dark("#0c0d0f");
    const double onLight = (luminance(light) + 0.05) / (luminance(face) + 0.05);
    const double onDark = (luminance(face) + 0.05) / (luminance(dark) + 0.05);
    return onLight >= onDark ? light : dark;
}

} // namespace glimra::desktop
