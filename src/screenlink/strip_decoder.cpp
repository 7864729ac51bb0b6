#include "screenlink/strip_decoder.h"

#include <algorithm>

namespace glimra::screenlink {

namespace {

/// In how many data cells each channel is on.
struct ChannelCounts {
    int red = 0;
    int green = 0;
    int blue = 0;
};

/// The same cell as `toCell` makes of the pixel's colour. Channels are compared where they lie in the pixel:
/// to divide each of the 33 by its mask would be most of the cost of decoding.
Cell toCell(std::uint32_t pixel, const platform::PixelFormat& format) {
    const auto isOn = [pixel](std::uint32_t mask) {
        return static_cast<double>(pixel & mask) >= kChannelOn * static_cast<double>(mask);
    };
    return {isOn(format.redMask), isOn(format.greenMask), isOn(format.blueMask)};
}

/// The colour code that the data cells have as a whole. The first rule that holds counts.
int commonColor(const ChannelCounts& count) {
    if (count.green + count.blue < count.red)
        return kRedBit;
    if (count.red + count.green < count.blue)
        return kBlueBit;
    if (count.red + count.blue < count.green)
        return kGreenBit;
    if (count.green < count.red && count.red == count.blue)
        return kRedBit | kBlueBit;
    if (count.blue == count.green && count.red < count.blue)
        return kGreenBit | kBlueBit;
    return kRedBit | kGreenBit | kBlueBit;
}

std::optional<char> prefixOfColor(int colorCode) {
    const auto* const found = std::ranges::find(kPrefixColors, colorCode);
    if (found == kPrefixColors.end())
        return std::nullopt;
    return kPrefixCharacters[static_cast<std::size_t>(found - kPrefixColors.begin())];
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
    for (const std::size_t marker : kMarkerCells)
        if (!cells[marker].lit())
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
                 prefixOfColor(commonColor(count))};
}

std::optional<Token> TokenAssembler::accept(const Frame& frame) {
    if (!frame.confirm) {
        if (!frame.hold)
            charSuspected = frame.character;
        return std::nullopt;
    }
    // Forgotten whether it matches or not. So a confirm frame that stays on the screen gives its token only
    // once, and one that was captured while it was being painted gives none.
    const bool confirmed = charSuspected == frame.character;
    charSuspected.reset();
    if (!confirmed)
        return std::nullopt;
    return Token{frame.prefix, frame.character};
}

} // namespace glimra::screenlink
