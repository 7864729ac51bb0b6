#include "desktop/windows/paint_tools.h"

#include "lighting/keyboard_layout.h"
#include "profiles/color_slots.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace glimra::desktop {

namespace {

using lighting::KeyCode;
using lighting::kKeyboardLayout;

enum class Kind { Letter, Digit, Function, Arrow, NumberBlock, Sign, Navigation, Control, Macro, Ornament };

/// Keys whose codes follow each other.
struct Range {
    Kind kind;
    KeyCode first;
    KeyCode last;
};

/// The first range that a code is in counts.
constexpr std::array kRanges{
    Range{Kind::Digit, 0x02, 0x0B},         Range{Kind::Sign, 0x0C, 0x0D},
    Range{Kind::Letter, 0x10, 0x19},        Range{Kind::Sign, 0x1A, 0x1B},
    Range{Kind::Letter, 0x1E, 0x26},        Range{Kind::Sign, 0x27, 0x29},
    Range{Kind::Sign, 0x2B, 0x2B},          Range{Kind::Letter, 0x2C, 0x32},
    Range{Kind::Sign, 0x33, 0x35},          Range{Kind::NumberBlock, 0x37, 0x37},
    Range{Kind::Function, 0x3B, 0x44},      Range{Kind::NumberBlock, 0x45, 0x45},
    Range{Kind::Navigation, 0x46, 0x46},    Range{Kind::NumberBlock, 0x47, 0x53},
    Range{Kind::Function, 0x57, 0x58},      Range{Kind::NumberBlock, 0x11C, 0x11C},
    Range{Kind::NumberBlock, 0x135, 0x135}, Range{Kind::Navigation, 0x137, 0x137},
    Range{Kind::Navigation, 0x145, 0x147},  Range{Kind::Arrow, 0x148, 0x148},
    Range{Kind::Navigation, 0x149, 0x149},  Range{Kind::Arrow, 0x14B, 0x14B},
    Range{Kind::Arrow, 0x14D, 0x14D},       Range{Kind::Navigation, 0x14F, 0x14F},
    Range{Kind::Arrow, 0x150, 0x150},       Range{Kind::Navigation, 0x151, 0x153},
    Range{Kind::Macro, 0x200, 0x208},       Range{Kind::Ornament, 0x209, 0x20A},
};

Kind kindOf(KeyCode code) {
    const auto* const range = std::ranges::find_if(
        kRanges, [code](const Range& each) { return code >= each.first && code <= each.last; });
    return range == kRanges.end() ? Kind::Control : range->kind;
}

bool belong(PaintTool tool, const lighting::KeyRect& a, const lighting::KeyRect& b) {
    // The keys of a row do not stand on quite the same line.
    constexpr int kUneven = 5;
    switch (tool) {
    case PaintTool::Row:
        return std::abs(a.y - b.y) <= kUneven;
    case PaintTool::Group:
        return kindOf(a.code) == kindOf(b.code);
    case PaintTool::Brush:
    case PaintTool::PickUp:
        break;
    }
    return false;
}

QPointF centerOf(std::size_t index) {
    const lighting::KeyRect& key = kKeyboardLayout[index];
    return {key.x + key.width / 2.0, key.y + key.height / 2.0};
}

} // namespace

std::optional<std::size_t> keyAtPoint(const QPointF& point) {
    const auto* const key = std::ranges::find_if(kKeyboardLayout, [&point](const lighting::KeyRect& each) {
        return each.contains(point.x(), point.y());
    });
    if (key == kKeyboardLayout.end())
        return std::nullopt;
    return static_cast<std::size_t>(key - kKeyboardLayout.begin());
}

std::vector<std::size_t> keysOf(PaintTool tool, std::size_t pressed) {
    if (tool == PaintTool::PickUp)
        return {};
    std::vector<std::size_t> keys{pressed};
    for (std::size_t index = 0; index < kKeyboardLayout.size(); ++index)
        if (index != pressed && belong(tool, kKeyboardLayout[index], kKeyboardLayout[pressed]))
            keys.push_back(index);
    return keys;
}

PaintTools::PaintTools(QWidget* painter, KeyboardCanvas& canvas, InterfaceBinder& binder,
                       const profiles::CanvasBuffer& buffer)
    : m_painter(painter),
      m_canvas(canvas),
      m_binder(binder),
      m_buffer(buffer) {
    binder.setCommand("brushTool", [this] { choose(PaintTool::Brush); });
    binder.setCommand("rowTool", [this] { choose(PaintTool::Row); });
    binder.setCommand("groupTool", [this] { choose(PaintTool::Group); });
    binder.setCommand("pickUpTool", [this] { choose(PaintTool::PickUp); });
    binder.setCommand("paintAll", [this] { paintAll(); });
}

void PaintTools::takeOver() {
    m_pressOne = std::exchange(m_canvas.pressed, [this](QPointF point) { press(point); });
    m_dragOne = std::exchange(m_canvas.dragged, [this](QPointF point) { drag(point); });
    m_canvas.rightPressed = [this](std::size_t key) { pickUp(key); };
}

void PaintTools::choose(PaintTool tool) {
    m_tool = tool;
    m_canvas.setCursor(tool == PaintTool::PickUp ? Qt::CrossCursor : Qt::ArrowCursor);
}

void PaintTools::press(const QPointF& point) {
    m_last = keyAtPoint(point);
    if (m_tool == PaintTool::Brush || !m_last)
        return m_pressOne(point);
    if (m_tool == PaintTool::PickUp)
        return pickUp(*m_last);
    paint(keysOf(m_tool, *m_last), true);
}

void PaintTools::drag(const QPointF& point) {
    if (m_tool == PaintTool::Brush)
        return m_dragOne(point);
    const auto key = keyAtPoint(point);
    if (!key || key == m_last)
        return;
    m_last = key;
    paint(keysOf(m_tool, *key), false);
}

void PaintTools::paintAll() {
    std::vector<std::size_t> keys(kKeyboardLayout.size());
    std::iota(keys.begin(), keys.end(), std::size_t{0});
    paint(keys, true);
}

void PaintTools::paint(const std::vector<std::size_t>& keys, bool isNewStep) {
    // What is dragged over belongs to the step of the press.
    for (const std::size_t key : keys)
        (std::exchange(isNewStep, false) ? m_pressOne : m_dragOne)(centerOf(key));
}

void PaintTools::pickUp(std::size_t key) {
    const int slot = m_buffer.keysToColors.at(kKeyboardLayout[key].code);
    const auto* const tag = std::ranges::find(profiles::kSlotOfTag, slot);
    if (tag == profiles::kSlotOfTag.end())
        return;
    m_binder.send("paintingColorPicker:",
                  app::RadioTag{static_cast<int>(tag - profiles::kSlotOfTag.begin()) + 1});
    // Whoever has picked a colour up wants to paint with it.
    if (m_tool == PaintTool::PickUp)
        m_painter->findChild<QAbstractButton*>("brushTool")->setChecked(true);
}

} // namespace glimra::desktop
