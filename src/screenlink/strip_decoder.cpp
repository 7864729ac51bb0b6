#include "screenlink/strip_decoder.h"

namespace glimra::screenlink {

namespace {

constexpr std::size_t kFirstMarkerCell = 0;
constexpr std::size_t kConfirmCell = 1;
constexpr std::size_t kSecondMarkerCell = 9;
constexpr std::size_t kHoldCell = 10;

/// In how many data cells each channel is on.
struct ChannelCounts {
    int red = 0;
    int green = 0;
    int blue = 0;
};

/// What `toCell` makes of a pixel's colour. A channel's share of its mask is compared where it lies: dividing
/// it out for each of 33 channels is most of what decoding would cost.
Cell toCell(std::uint32_t pixel, const platform::PixelFormat& format) {
    const auto isOn = [pixel](std::uint32_t mask) {
        return static_cast<double>(pixel & mask) >= kChannelOn * static_cast<double>(mask);
    };
    return {isOn(format.redMask), isOn(format.greenMask), isOn(format.blueMask)};
}

/// The first rule that holds wins; white, yellow and no lit cell at all give no prefix.
std::optional<char> prefixOf(const ChannelCounts& count) {
    if (count.green + count.blue < count.red)
        return '`';
    if (count.red + count.green < count.blue)
        return '[';
    if (count.red + count.blue < count.green)
        return ']';
    if (count.green < count.red && count.red == count.blue)
        return '{';
    if (count.blue == count.green && count.red < count.blue)
        return '}';
    return std::nullopt;
}

} // namespace

Cell toCell(const platform::Color& color) {
    return {color.red >= kChannelOn, color.green >= kChannelOn, color.blue >= kChannelOn};
}

std::optional<Cells> sampleCells(const platform::ImageView& image, const PixelOffsets& pixelOffsets) {
    Cells cells;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::optional<std::uint32_t> pixel = image.pixelAt(pixelOffsets[i]);
        if (!pixel)
            return std::nullopt;
        cells[i] = toCell(*pixel, image.format);
    }
    return cells;
}

std::optional<Frame> decodeFrame(const Cells& cells) {
    if (!cells[kFirstMarkerCell].lit() || !cells[kSecondMarkerCell].lit())
        return std::nullopt;

    int value = 0;
    ChannelCounts count;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (scanDataFactor[i] == 0)
            continue;
        count.red += cells[i].red;
        count.green += cells[i].green;
        count.blue += cells[i].blue;
        value += cells[i].lit() ? scanDataFactor[i] : 0;
    }
    return Frame{cells[kConfirmCell].lit(), cells[kHoldCell].lit(), static_cast<char>(value),
                 prefixOf(count)};
}

std::string Token::text() const {
    std::string text;
    if (prefix)
        text += *prefix;
    text += character;
    return text;
}

std::optional<Token> TokenAssembler::accept(const Frame& frame) {
    if (!frame.confirm) {
        if (!frame.hold)
            charSuspected = frame.character;
        return std::nullopt;
    }
    // Forgotten whether it matches or not: a confirm frame that stays on screen gives its token once, and a
    // torn read gives nothing.
    const bool confirmed = charSuspected == frame.character;
    charSuspected.reset();
    if (!confirmed)
        return std::nullopt;
    return Token{frame.prefix, frame.character};
}

} // namespace glimra::screenlink
