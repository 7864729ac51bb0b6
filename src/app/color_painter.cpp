#include "app/color_painter.h"

#include "lighting/keyboard_layout.h"

#include <algorithm>
#include <numeric>

namespace glimra::app {

namespace {

using lighting::kKeyboardLayout;

/// Places in the layout, ascending by the keys' codes.
constexpr auto kKeysByCode = [] {
    std::array<std::size_t, kKeyboardLayout.size()> places{};
    std::iota(places.begin(), places.end(), std::size_t{0});
    std::ranges::sort(places, {}, [](std::size_t place) { return kKeyboardLayout[place].code; });
    return places;
}();

} // namespace

ColorPainter::ColorPainter(const Parts& parts, profiles::CanvasKeyCodes& canvasKeyCodes) : m_parts(parts) {
    for (const std::size_t index : kKeysByCode)
        canvasKeyCodes.push_back(kKeyboardLayout[index].code);
}

void ColorPainter::drawKeys(const ShowKey& showKey) {
    for (const std::size_t index : kKeysByCode) {
        const lighting::KeyCode code = kKeyboardLayout[index].code;
        const lighting::Color color = keyColor(code);
        showKey(index, color);
        m_parts.lighting.setKeyColor(lighting::driverKeyName(code), color);
    }
}

void ColorPainter::mouseDown(const CanvasPoint& point) {
    m_parts.edits.endStep();
    mouseDragged(point);
}

void ColorPainter::mouseDragged(const CanvasPoint& point) {
    m_parts.edits.perform(EditHistory::kStroke, [&] { paintKey(point); });
}

void ColorPainter::paintKey(const CanvasPoint& point) {
    const auto* const key = std::ranges::find_if(
        kKeyboardLayout, [&](const lighting::KeyRect& rect) { return rect.contains(point.x, point.y); });
    if (key != kKeyboardLayout.end() && key->code < m_parts.buffer.keysToColors.size()) {
        m_parts.buffer.keysToColors[key->code] = m_parts.buffer.paintColor;
        m_parts.view.displayNeeded.emit();
    }
    m_parts.profile.profileTouched = true;
}

lighting::Color ColorPainter::keyColor(lighting::KeyCode code) const {
    if (m_parts.buffer.usingActionbarCooldowns && m_parts.buffer.dimmedKeys.contains(code))
        return lighting::slotColor(m_parts.buffer.keyColorSet, lighting::kCooldownSlot);
    if (m_parts.useSingleColorMode)
        return lighting::slotColor(m_parts.buffer.keyColorSet, lighting::kColorASlot);
    return lighting::mappedColor(m_parts.buffer.keyColorSet, m_parts.buffer.keysToColors, code);
}

} // namespace glimra::app
