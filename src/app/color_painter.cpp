#include "app/color_painter.h"

#include "lighting/keyboard_layout.h"

#include <algorithm>

namespace glimra::app {

namespace {

constexpr double kKeyOpacity = 0.75;

using Layout = std::array<lighting::KeyRect, lighting::kKeyboardLayout.size()>;

constexpr Layout keyPaintRects = [] {
    Layout rects = lighting::kKeyboardLayout;
    std::ranges::sort(rects, {}, &lighting::KeyRect::code);
    return rects;
}();

} // namespace

ColorPainter::ColorPainter(const Parts& parts, profiles::CanvasKeyCodes& canvasKeyCodes) : m(parts) {
    for (const lighting::KeyRect& key : keyPaintRects)
        canvasKeyCodes.push_back(key.code);
}

void ColorPainter::drawRect(platform::Painter& painter) {
    for (const lighting::KeyRect& key : keyPaintRects) {
        const lighting::Color color = keyColor(key.code);
        painter.fillRect(key.x, key.y, key.width, key.height, color, kKeyOpacity);
        m.lighting.setKeyColor(lighting::driverKeyName(key.code), color);
    }
}

void ColorPainter::mouseDown(const CanvasPoint& point) {
    m.edits.endStep();
    mouseDragged(point);
}

void ColorPainter::mouseDragged(const CanvasPoint& point) {
    m.edits.perform(EditHistory::kStroke, [&] { paintKey(point); });
}

void ColorPainter::paintKey(const CanvasPoint& point) {
    const auto* const key = std::ranges::find_if(
        keyPaintRects, [&](const lighting::KeyRect& rect) { return rect.contains(point.x, point.y); });
    if (key != keyPaintRects.end() && key->code < m.buffer.keysToColors.size()) {
        m.buffer.keysToColors[key->code] = m.buffer.paintColor;
        m.view.displayNeeded.emit();
    }
    m.profile.profileTouched = true;
}

lighting::Color ColorPainter::keyColor(lighting::KeyCode code) const {
    if (m.buffer.usingActionbarCooldowns && m.buffer.dimmedKeys.contains(code))
        return lighting::slotColor(m.buffer.keyColorSet, lighting::kCooldownSlot);
    if (m.useSingleColorMode)
        return lighting::slotColor(m.buffer.keyColorSet, lighting::kColorASlot);
    return lighting::mappedColor(m.buffer.keyColorSet, m.buffer.keysToColors, code);
}

} // namespace glimra::app
