#include "tools/strip/strip_encoder.h"

namespace glimra::tools {

namespace {

constexpr std::size_t kConfirmCell = 1;
constexpr std::size_t kFirstDataCell = 2;
constexpr int kDataCells = 7;
constexpr std::array<std::size_t, 2> kMarkerCells = {0, 9};

/// A colour at full strength, by three bits: 1 red, 2 green, 4 blue.
constexpr Rgb colorOfBits(unsigned bits) {
    const auto channel = [bits](unsigned bit) { return static_cast<std::uint8_t>((bits & bit) ? 255 : 0); };
    return {channel(1), channel(2), channel(4)};
}

constexpr Rgb kWhite = colorOfBits(7);

struct PrefixColor {
    char prefix;
    Rgb color;
};

constexpr std::array<PrefixColor, 5> kPrefixColors = {{
    {'`', colorOfBits(1)}, // red
    {'[', colorOfBits(4)}, // blue
    {']', colorOfBits(2)}, // green
    {'{', colorOfBits(5)}, // magenta
    {'}', colorOfBits(6)}, // cyan
}};

Rgb dataColor(const Token& token) {
    for (const PrefixColor& entry : kPrefixColors)
        if (entry.prefix == token.prefix)
            return entry.color;
    return kWhite;
}

StripFrame frameOf(char character, Rgb color) {
    StripFrame frame{};
    for (const std::size_t cell : kMarkerCells)
        frame[cell] = kWhite;
    for (int i = 0; i < kDataCells; ++i)
        if ((character >> (kDataCells - 1 - i)) & 1)
            frame[kFirstDataCell + static_cast<std::size_t>(i)] = color;
    return frame;
}

} // namespace

std::string Token::text() const {
    std::string text;
    if (prefix)
        text += *prefix;
    return text + character;
}

bool isPrefix(char character) {
    for (const PrefixColor& entry : kPrefixColors)
        if (entry.prefix == character)
            return true;
    return false;
}

bool isEncodable(const Token& token) {
    return !token.prefix || token.character != '\0';
}

TokenFrames encodeToken(const Token& token) {
    TokenFrames frames{frameOf(token.character, kWhite), frameOf(token.character, dataColor(token))};
    frames.confirm[kConfirmCell] = kWhite;
    return frames;
}

StripFrame testPattern() {
    constexpr std::array<unsigned, screenlink::kCellCount> bits = {1, 0, 6, 7, 5, 4, 3, 1, 2, 7, 0};
    StripFrame frame{};
    for (std::size_t i = 0; i < frame.size(); ++i)
        frame[i] = colorOfBits(bits[i]);
    return frame;
}

} // namespace glimra::tools
