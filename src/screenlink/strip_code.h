#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace glimra::screenlink {

// How the strip's colours carry tokens: the tables that whoever reads or paints a strip uses, and the
// encoder.
//
// The strip is a row of eleven cells. A token is carried by two frames, one after the other: the announce
// frame, then the confirm frame. In both of them the marker cells are lit, and the lit data cells add up to
// the token's character. The confirm cell tells the two frames apart: it is dark in an announce frame and lit
// in a confirm frame. If the hold cell is lit, an announce frame does not count. A token may have one of five
// prefix characters; then that prefix's colour is the colour of the data cells in the confirm frame.

inline constexpr std::size_t kCellCount = 11;

inline constexpr std::array<std::size_t, 2> kMarkerCells{0, 9};
inline constexpr std::size_t kConfirmCell = 1;
inline constexpr std::size_t kHoldCell = 10;
/// What each data cell is worth when it is lit; 0 for a cell that is no data cell.
inline constexpr std::array<int, kCellCount> scanDataFactor{0, 0, 64, 32, 16, 8, 4, 2, 1, 0, 0};

/// A colour code is the sum of the channels that are on: 0 is black and 7 is white.
inline constexpr int kRedBit = 1;
inline constexpr int kGreenBit = 2;
inline constexpr int kBlueBit = 4;

inline constexpr std::string_view kPrefixCharacters = "`[]{}";
/// The colour code of each prefix character, in the order of `kPrefixCharacters`.
inline constexpr std::array<int, kPrefixCharacters.size()> kPrefixColors{
    kRedBit, kBlueBit, kGreenBit, kRedBit | kBlueBit, kGreenBit | kBlueBit};

/// The colour code of each cell while the add-on shows the pattern that a calibration looks for.
inline constexpr std::array<int, kCellCount> kTestPattern{1, 0, 6, 7, 5, 4, 3, 1, 2, 7, 0};

struct Token {
    /// One of `kPrefixCharacters`, or none.
    std::optional<char> prefix;
    /// U+0000 to U+007F.
    char character = '\0';

    std::string text() const;

    friend bool operator==(const Token&, const Token&) = default;
};

/// The token that `text` spells; none when a strip cannot show it. A token is one character U+0000 to U+007F,
/// or a prefix character and one character U+0001 to U+007F: the character of value 0 lights no data cell, so
/// nothing would have the prefix's colour.
std::optional<Token> tokenOf(std::string_view text);

/// A strip on the screen: the colour of each cell, as 0xRRGGBB.
using StripFrame = std::array<std::uint32_t, kCellCount>;

inline constexpr StripFrame kDarkFrame{};

struct TokenFrames {
    StripFrame announce;
    StripFrame confirm;
};

/// The two frames that carry a token which `tokenOf` accepts.
TokenFrames encodeToken(const Token& token);

/// `kTestPattern` in full colours.
StripFrame testPattern();

} // namespace glimra::screenlink
