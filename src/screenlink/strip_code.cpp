#include "screenlink/strip_code.h"

namespace glimra::screenlink {

namespace {

constexpr int kWhite = kRedBit | kGreenBit | kBlueBit;

constexpr bool isPrefix(char character) {
    return kPrefixCharacters.find(character) != std::string_view::npos;
}

/// Every channel of the colour code at its full strength.
constexpr std::uint32_t fullColor(int colorCode) {
    return ((colorCode & kRedBit) != 0 ? 0xFF0000U : 0U) | ((colorCode & kGreenBit) != 0 ? 0x00FF00U : 0U) |
           ((colorCode & kBlueBit) != 0 ? 0x0000FFU : 0U);
}

StripFrame frameOf(char character, int dataColor) {
    StripFrame frame{};
    for (const std::size_t cell : kMarkerCells)
        frame[cell] = fullColor(kWhite);
    for (std::size_t cell = 0; cell < kCellCount; ++cell)
        if ((character & scanDataFactor[cell]) != 0)
            frame[cell] = fullColor(dataColor);
    return frame;
}

} // namespace

std::string Token::text() const {
    std::string text;
    if (prefix)
        text += *prefix;
    text += character;
    return text;
}

std::optional<Token> tokenOf(std::string_view text) {
    if (text.empty() || static_cast<unsigned char>(text.back()) > 0x7F)
        return std::nullopt;
    if (text.size() == 1)
        return Token{std::nullopt, text.back()};
    if (text.size() != 2 || !isPrefix(text.front()) || text.back() == '\0')
        return std::nullopt;
    return Token{text.front(), text.back()};
}

TokenFrames encodeToken(const Token& token) {
    const int confirmColor = token.prefix ? kPrefixColors[kPrefixCharacters.find(*token.prefix)] : kWhite;
    TokenFrames frames{frameOf(token.character, kWhite), frameOf(token.character, confirmColor)};
    frames.confirm[kConfirmCell] = fullColor(kWhite);
    return frames;
}

StripFrame testPattern() {
    StripFrame frame{};
    for (std::size_t cell = 0; cell < kCellCount; ++cell)
        frame[cell] = fullColor(kTestPattern[cell]);
    return frame;
}

} // namespace glimra::screenlink
