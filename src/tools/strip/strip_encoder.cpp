#include "tools/strip/strip_encoder.h"

namespace glimra::tools {

namespace {

using screenlink::kCellCount;
using screenlink::kPrefixCharacters;

constexpr std::array<std::size_t, 2> kMarkerCells = {0, 9};
constexpr std::size_t kConfirmCell = 1;

/// A colour at full strength, by three bits: 1 red, 2 green, 4 blue.
constexpr Rgb colorOfBits(unsigned bits) {
    const auto channel = [bits](unsigned bit) { return static_cast<std::uint8_t>((bits & bit) ? 255 : 0); };
    return {channel(1), channel(2), channel(4)};
}

constexpr Rgb kWhite = colorOfBits(7);

/// Of the confirm frame's data cells, in the order of the prefix characters: red, blue, green, magenta, cyan.
constexpr std::array<Rgb, kPrefixCharacters.size()> kPrefixColors = {
    colorOfBits(1), colorOfBits(4), colorOfBits(2), colorOfBits(5), colorOfBits(6)};

Rgb dataColor(const Token& token) {
    return token.prefix ? kPrefixColors[kPrefixCharacters.find(*token.prefix)] : kWhite;
}

StripFrame frameOf(char character, Rgb color) {
    StripFrame frame{};
    for (const std::size_t cell : kMarkerCells)
        frame[cell] = kWhite;
    for (std::size_t cell = 0; cell < kCellCount; ++cell)
        if (character & screenlink::scanDataFactor[cell])
            frame[cell] = color;
    return frame;
}

} // namespace

bool isEncodable(const Token& token) {
    return !token.prefix || token.character != '\0';
}

TokenFrames encodeToken(const Token& token) {
    TokenFrames frames{frameOf(token.character, kWhite), frameOf(token.character, dataColor(token))};
    frames.confirm[kConfirmCell] = kWhite;
    return frames;
}

StripFrame testPattern() {
    constexpr std::array<unsigned, kCellCount> bits = {1, 0, 6, 7, 5, 4, 3, 1, 2, 7, 0};
    StripFrame frame{};
    for (std::size_t i = 0; i < frame.size(); ++i)
        frame[i] = colorOfBits(bits[i]);
    return frame;
}

} // namespace glimra::tools
