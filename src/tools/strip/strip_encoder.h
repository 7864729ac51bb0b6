#pragma once

#include "lighting/color_conversion.h"
#include "screenlink/strip_decoder.h"

#include <array>

namespace glimra::tools {

using lighting::Rgb;
using screenlink::Token;

/// The strip as it is on the screen, one colour a cell.
using StripFrame = std::array<Rgb, screenlink::kCellCount>;

inline constexpr StripFrame kDarkFrame{};

/// The two frames that carry a token: it counts once the second has confirmed the first.
struct TokenFrames {
    StripFrame announce;
    StripFrame confirm;
};

/// Whether the strip can carry the token, whose characters lie in U+0000 to U+007F: a prefix needs a lit data
/// cell to show its colour on, and the character of value 0 lights none.
bool isEncodable(const Token& token);

/// The frames of an encodable token.
TokenFrames encodeToken(const Token& token);

/// What the add-on shows while the application looks for the strip on the screen.
StripFrame testPattern();

} // namespace glimra::tools
