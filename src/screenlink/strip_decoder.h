#pragma once

#include "screenlink/strip_geometry.h"

#include <optional>

namespace glimra::screenlink {

// From pixels to tokens, in stages: image row -> cells -> frame -> token. Nothing here allocates.

/// A channel is on when its component is at least this: 14 of 255.
inline constexpr double kChannelOn = 0.0546875;

/// The channels of one cell that are on.
struct Cell {
    bool red = false;
    bool green = false;
    bool blue = false;

    constexpr bool lit() const { return red || green || blue; }
    constexpr int colorCode() const {
        return (red ? kRedBit : 0) | (green ? kGreenBit : 0) | (blue ? kBlueBit : 0);
    }

    friend bool operator==(const Cell&, const Cell&) = default;
};

using Cells = std::array<Cell, kCellCount>;

Cell toCell(const platform::Color& color);

/// The cells at the given positions of a captured row; none when one of them lies beyond it.
std::optional<Cells> sampleCells(const platform::ImageView& image, const PixelOffsets& pixelOffsets);

/// A valid frame.
struct Frame {
    bool confirm = false;
    /// The hold cell is lit, so an announce frame does not count.
    bool hold = false;
    /// U+0000 to U+007F.
    char character = '\0';
    /// One of `kPrefixCharacters`, or none.
    std::optional<char> prefix;
};

/// The frame that the cells show; none when a marker cell is dark.
std::optional<Frame> decodeFrame(const Cells& cells);

/// Makes tokens of frames: a confirm frame completes a token when it has the same character as the announce
/// frame before it. What was announced is remembered until the next confirm frame, even if invalid frames
/// come between.
class TokenAssembler {
public:
    /// Takes the next frame seen; gives the token that it completes.
    std::optional<Token> accept(const Frame& frame);

private:
    /// Announced and not yet confirmed.
    std::optional<char> charSuspected;
};

} // namespace glimra::screenlink
