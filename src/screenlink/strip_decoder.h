#pragma once

#include "screenlink/strip_geometry.h"

#include <optional>
#include <string>

namespace glimra::screenlink {

// From pixels to tokens, in stages: image row -> cells -> frame -> token. Nothing here allocates but
// `Token::text`.
//
// The strip has eleven cells. Cell 0 and cell 9 are markers and lit in every valid frame; cell 1 tells an
// announce frame (dark) from a confirm frame (lit); cells 2 to 8 are the seven bits of a character, the most
// significant first; a lit cell 10 makes an announce frame void. A character counts only when a confirm frame
// repeats what the last announce frame said. The colour of the confirm frame's data cells can put one of five
// prefix characters before it.

/// A channel is on from here: 14 of 255.
inline constexpr double kChannelOn = 0.0546875;

/// The channels of one cell that are on.
struct Cell {
    bool red = false;
    bool green = false;
    bool blue = false;

    constexpr bool lit() const { return red || green || blue; }
    /// 3-bit colour code: red 1, green 2, blue 4.
    constexpr int colorCode() const { return (red ? 1 : 0) + (green ? 2 : 0) + (blue ? 4 : 0); }

    friend bool operator==(const Cell&, const Cell&) = default;
};

using Cells = std::array<Cell, kCellCount>;

/// Weight of each cell in the character's value.
inline constexpr std::array<int, kCellCount> scanDataFactor{0, 0, 64, 32, 16, 8, 4, 2, 1, 0, 0};

inline constexpr std::string_view kPrefixCharacters = "`[]{}";

Cell toCell(const platform::Color& color);

/// The cells at the given positions of a captured row; none when one of them lies beyond it.
std::optional<Cells> sampleCells(const platform::ImageView& image, const PixelOffsets& pixelOffsets);

/// A valid frame.
struct Frame {
    bool confirm = false;
    /// Only of meaning in an announce frame.
    bool hold = false;
    /// U+0000 to U+007F.
    char character = '\0';
    /// One of `kPrefixCharacters`, or none.
    std::optional<char> prefix;
};

/// What the cells say; none when a marker cell is dark.
std::optional<Frame> decodeFrame(const Cells& cells);

/// An accepted character with its prefix.
struct Token {
    std::optional<char> prefix;
    char character = '\0';

    std::string text() const;

    friend bool operator==(const Token&, const Token&) = default;
};

/// The announce-then-confirm rule. Its state survives everything but a confirm frame.
class TokenAssembler {
public:
    /// Takes the next frame seen; gives the token that it completes.
    std::optional<Token> accept(const Frame& frame);

private:
    /// Announced and not yet confirmed.
    std::optional<char> charSuspected;
};

} // namespace glimra::screenlink
