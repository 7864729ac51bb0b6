#pragma once

#include "lighting/color_conversion.h"
#include "screenlink/strip_geometry.h"

#include <array>
#include <optional>
#include <string>

namespace glimra::tools {

using lighting::Rgb;

/// The strip as it is on the screen, one colour a cell.
using StripFrame = std::array<Rgb, screenlink::kCellCount>;

/// One step of the add-on's language. Both characters lie in U+0000 to U+007F.
struct Token {
    /// One of ` [ ] { }; travels as the colour of the data cells.
    std::optional<char> prefix;
    char character = '\0';

    std::string text() const;

    friend bool operator==(const Token&, const Token&) = default;
};

/// The two frames that carry a token: it counts once the second has confirmed the first.
struct TokenFrames {
    StripFrame announce;
    StripFrame confirm;
};

bool isPrefix(char character);

/// Whether the strip can carry the token: a prefix needs a lit data cell to show its colour on, and the
/// character of value 0 lights none.
bool isEncodable(const Token& token);

/// The frames of an encodable token.
TokenFrames encodeToken(const Token& token);

/// What the add-on shows while the application looks for the strip on the screen.
StripFrame testPattern();

inline constexpr StripFrame kDarkFrame{};

} // namespace glimra::tools
