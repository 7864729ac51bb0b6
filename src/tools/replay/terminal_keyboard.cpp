#include "tools/replay/terminal_keyboard.h"

#include <algorithm>
#include <array>

namespace glimra::tools {

namespace {

using lighting::KeyRect;
using lighting::Rgb;

/// How many points a column of text stands for; it makes the narrowest keys three columns wide.
constexpr int kPointsPerColumn = 7;
constexpr int kColumns = (lighting::kKeyboardWidth + kPointsPerColumn - 1) / kPointsPerColumn;
/// Each line of text shows the keys at one of these heights, in points.
constexpr std::array<int, 8> kLines{273, 239, 197, 165, 132, 99, 65, 9};
constexpr std::string_view kPlain = "\x1b[0m";

const KeyRect* keyAt(double x, double y) {
    const auto* found = std::ranges::find_if(lighting::kKeyboardLayout,
                                             [=](const KeyRect& key) { return key.contains(x, y); });
    return found == lighting::kKeyboardLayout.end() ? nullptr : found;
}

std::string colorCode(int ground, Rgb color) {
    return "\x1b[" + std::to_string(ground) + ";2;" + std::to_string(color.red) + ';' +
           std::to_string(color.green) + ';' + std::to_string(color.blue) + 'm';
}

std::size_t characterCount(std::string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

/// The legend in the middle of `columns` columns, cut off where it does not fit.
std::string centred(std::string_view legend, std::size_t columns) {
    const std::size_t length = characterCount(legend);
    if (length > columns)
        return std::string(legend.substr(0, columns)); // only one-letter legends are not ASCII
    const std::size_t left = (columns - length) / 2;
    return std::string(left, ' ') + std::string(legend) + std::string(columns - length - left, ' ');
}

std::string drawKey(const KeyRect& key, Rgb color, std::size_t columns, bool withLegend) {
    constexpr int kForeground = 38;
    constexpr int kBackground = 48;
    const int brightness = 3 * color.red + 6 * color.green + color.blue;
    const Rgb ink = brightness > 1200 ? Rgb{0, 0, 0} : Rgb{255, 255, 255};
    return colorCode(kBackground, color) + colorCode(kForeground, ink) +
           centred(withLegend ? key.legend : std::string_view{}, columns) + std::string(kPlain);
}

} // namespace

std::string drawOnTerminal(const keyboards::KeyColors& colors) {
    std::string drawing;
    for (const int y : kLines) {
        for (int column = 0; column < kColumns;) {
            const auto keyIn = [y](int at) { return keyAt((at + 0.5) * kPointsPerColumn, y); };
            const KeyRect* key = keyIn(column);
            int end = column + 1;
            while (end < kColumns && keyIn(end) == key)
                ++end;
            const auto columns = static_cast<std::size_t>(end - column);
            if (key) {
                const auto index = static_cast<std::size_t>(key - lighting::kKeyboardLayout.data());
                const bool isTop = key->y + key->height - y <= 24;
                drawing += drawKey(*key, colors[index], columns, isTop);
            } else {
                drawing.append(columns, ' ');
            }
            column = end;
        }
        drawing += '\n';
    }
    return drawing;
}

} // namespace glimra::tools
