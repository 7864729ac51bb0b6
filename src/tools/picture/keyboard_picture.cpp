#include "tools/picture/keyboard_picture.h"

#include "tools/picture/pixel_font.h"

#include <algorithm>

namespace glimra::tools {

namespace {

using lighting::KeyRect;
using lighting::Rgb;

/// The margin left and right of a legend together, in pixels, where its dots are larger than one pixel.
constexpr int kLegendMargin = 4;
/// How many pixels a rounded corner lacks in each row, beginning with the outermost.
constexpr std::array<int, 4> kCornerInset{4, 2, 1, 1};

constexpr Rgb kBoard{24, 24, 28};
constexpr Rgb kRim{66, 66, 74};
constexpr Rgb kDarkInk{16, 16, 18};
constexpr Rgb kLightInk{240, 240, 240};
/// The legend's colour on a key without light.
constexpr Rgb kUnlitInk{120, 120, 128};

Rgb inkOn(Rgb color) {
    const int brightness = (3 * color.red + 6 * color.green + color.blue) / 10;
    if (brightness > 110)
        return kDarkInk;
    return color == Rgb{0, 0, 0} ? kUnlitInk : kLightInk;
}

struct Box {
    int left;
    int top;
    int width;
    int height;

    Box shrunkBy(int border) const {
        return {left + border, top + border, width - 2 * border, height - 2 * border};
    }
};

class Drawing {
public:
    explicit Drawing(int pixelsPerPoint) : m_scale(pixelsPerPoint) {
        m_picture.width = lighting::kKeyboardWidth * m_scale;
        m_picture.height = lighting::kKeyboardHeight * m_scale;
        m_picture.pixels.assign(static_cast<std::size_t>(m_picture.width) *
                                    static_cast<std::size_t>(m_picture.height),
                                paletteIndex(kBoard));
    }

    void drawKey(const KeyRect& key, Rgb color) {
        const Box box{key.x * m_scale, (lighting::kKeyboardHeight - key.y - key.height) * m_scale,
                      key.width * m_scale, key.height * m_scale};
        fillRounded(box, kRim);
        fillRounded(box.shrunkBy(1), color);
        drawLegend(key.legend, box, inkOn(color));
    }

    Picture picture() && { return std::move(m_picture); }

private:
    std::uint8_t paletteIndex(Rgb color) {
        std::vector<Rgb>& palette = m_picture.palette;
        auto found = std::ranges::find(palette, color);
        if (found == palette.end())
            found = palette.insert(found, color);
        return static_cast<std::uint8_t>(found - palette.begin());
    }

    void fill(const Box& box, std::uint8_t color) {
        for (int y = box.top; y < box.top + box.height; ++y) {
            const auto first =
                m_picture.pixels.begin() + static_cast<std::ptrdiff_t>(y) * m_picture.width + box.left;
            std::fill(first, first + box.width, color);
        }
    }

    void fillRounded(const Box& box, Rgb color) {
        const std::uint8_t index = paletteIndex(color);
        for (int row = 0; row < box.height; ++row) {
            const auto fromEdge = static_cast<std::size_t>(std::min(row, box.height - 1 - row));
            const int inset = fromEdge < kCornerInset.size() ? kCornerInset[fromEdge] : 0;
            fill({box.left + inset, box.top + row, box.width - 2 * inset, 1}, index);
        }
    }

    void drawLegend(std::string_view legend, const Box& box, Rgb ink) {
        const std::vector<const Glyph*> glyphs = glyphsOf(legend);
        const int dots = static_cast<int>(glyphs.size()) * (kGlyphWidth + 1) - 1;
        if (glyphs.empty() || dots > box.width)
            return;
        const int dot = std::clamp((box.width - kLegendMargin) / dots, 1, m_scale);
        const std::uint8_t index = paletteIndex(ink);
        int left = box.left + (box.width - dots * dot) / 2;
        const int top = box.top + (box.height - kGlyphHeight * dot) / 2;
        for (const Glyph* glyph : glyphs) {
            for (int row = 0; row < kGlyphHeight; ++row)
                for (int column = 0; column < kGlyphWidth; ++column)
                    if (glyph->hasDot(column, row))
                        fill({left + column * dot, top + row * dot, dot, dot}, index);
            left += (kGlyphWidth + 1) * dot;
        }
    }

    int m_scale;
    Picture m_picture;
};

} // namespace

Picture drawKeyboard(const keyboards::KeyColors& colors, int pixelsPerPoint) {
    Drawing drawing(pixelsPerPoint);
    for (std::size_t i = 0; i < colors.size(); ++i)
        drawing.drawKey(lighting::kKeyboardLayout[i], colors[i]);
    return std::move(drawing).picture();
}

} // namespace glimra::tools
