#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace glimra::tools {

inline constexpr int kGlyphWidth = 5;
inline constexpr int kGlyphHeight = 7;

/// A character made of dots: its rows from the top. In a row, the highest of five bits is the leftmost dot.
struct Glyph {
    char32_t character;
    std::array<std::uint8_t, kGlyphHeight> rows;

    bool hasDot(int column, int row) const {
        return (rows[static_cast<std::size_t>(row)] >> static_cast<unsigned>(kGlyphWidth - 1 - column) &
                1U) != 0;
    }
};

/// The glyph of a character that stands on a key cap; none for others.
const Glyph* findGlyph(char32_t character);

/// The glyphs of a UTF-8 text; characters without one are left out. No font of the machine is used, so that
/// pictures are the same on every machine.
std::vector<const Glyph*> glyphsOf(std::string_view text);

} // namespace glimra::tools
