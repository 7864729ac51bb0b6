#include "screenlink/strip_decoder.h"

#include <gmock/gmock.h>

namespace glimra::screenlink {
namespace {

using testing::ElementsAre;

constexpr Cell kDark{};

TEST(StripGeometry, PositionsAreRoundedInSinglePrecision) {
    EXPECT_THAT(updatePixelOffsets(80.0), ElementsAre(0, 7, 15, 22, 29, 36, 44, 51, 58, 65, 73));
    EXPECT_THAT(updatePixelOffsets(0.0), ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    // 5.5 x 1 / 11 is a half, and goes away from zero.
    EXPECT_EQ(cellPosition(1, 5.5F), 1);
}

TEST(StripDecoder, AChannelIsOnFromFourteenOf255) {
    EXPECT_TRUE(toCell({0.0546875, 0.0, 0.0}).lit());
    EXPECT_FALSE(toCell({0.0546, 0.0546, 0.0546}).lit());
    const std::vector<std::uint32_t> pixels{0x000E0D00, 0x0000000D};
    const platform::ImageView view{pixels, {}, 0};
    EXPECT_EQ(toCell(*view.colorAt(0)), (Cell{true, false, false}));
    EXPECT_EQ(toCell(*view.colorAt(1)), kDark);
    const platform::ImageView deep{pixels, {0x3FF00000, 0xFFC00, 0x3FF}, 0};
    EXPECT_EQ(toCell(*deep.colorAt(0)), (Cell{false, true, true})); // 0x383 and 0x100 of 0x3FF
}

TEST(StripDecoder, PixelsAreReadAsTheirColours) {
    for (const platform::PixelFormat format :
         {platform::PixelFormat{}, platform::PixelFormat{0x3FF00000, 0xFFC00, 0x3FF},
          platform::PixelFormat{0xFF, 0xFF00, 0xFF0000}})
        for (std::uint32_t level = 0; level < 1024; ++level) {
            // Each level on all channels at once, as far as the masks hold it.
            const std::vector<std::uint32_t> pixels(74, (level << 20 | level << 10 | level) & 0x3FFFFFFF);
            const platform::ImageView image{pixels, format, 0};
            EXPECT_EQ((*sampleCells(image, updatePixelOffsets(80.0)))[0], toCell(*image.colorAt(0))) << level;
        }
}

TEST(StripDecoder, ASampleBeyondTheImageLeavesNoCells) {
    const std::vector<std::uint32_t> pixels(73, 0xFFFFFF);
    const PixelOffsets offsets = updatePixelOffsets(80.0);
    EXPECT_FALSE(sampleCells({pixels, {}, 0}, offsets)); // the last sample is at 73
    EXPECT_FALSE(sampleCells({pixels, {}, 1}, offsets)); // the first pixel is left of the screen
    const std::vector<std::uint32_t> enough(74, 0xFFFFFF);
    EXPECT_TRUE(sampleCells({enough, {}, 0}, offsets));
}

Cells cellsOf(const StripFrame& frame) {
    return *sampleCells({frame, {}, 0}, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
}

/// What the application understands when it sees frames one after another.
std::optional<Token> readBack(std::initializer_list<StripFrame> frames) {
    TokenAssembler assembler;
    std::optional<Token> token;
    for (const StripFrame& shown : frames)
        if (const auto frame = decodeFrame(cellsOf(shown)))
            token = assembler.accept(*frame);
    return token;
}

TEST(StripCode, EveryTokenIsReadAsItWasMeant) {
    int tokens = 0;
    for (const std::string prefix : {"", "`", "[", "]", "{", "}"})
        for (int character = 0; character < 256; ++character) {
            const std::string text = prefix + static_cast<char>(character);
            if (const auto token = tokenOf(text)) {
                const TokenFrames frames = encodeToken(*token);
                EXPECT_EQ(readBack({frames.announce, frames.confirm}), token) << text;
                EXPECT_FALSE(readBack({frames.confirm})) << "confirmed without an announcement: " << text;
                EXPECT_EQ(token->text(), text);
                ++tokens;
            }
        }
    EXPECT_EQ(tokens, 128 + 5 * 127);
}

TEST(StripCode, TheFramesAreThoseOfTheAddOn) {
    constexpr std::uint32_t kWhite = 0xFFFFFF;
    const TokenFrames frames = encodeToken({'{', 'C'});
    EXPECT_THAT(frames.announce, ElementsAre(kWhite, 0, kWhite, 0, 0, 0, 0, kWhite, kWhite, kWhite, 0));
    EXPECT_THAT(frames.confirm,
                ElementsAre(kWhite, kWhite, 0xFF00FF, 0, 0, 0, 0, 0xFF00FF, 0xFF00FF, kWhite, 0));
    EXPECT_THAT(testPattern(), ElementsAre(0xFF0000, 0, 0x00FFFF, kWhite, 0xFF00FF, 0x0000FF, 0xFFFF00,
                                           0xFF0000, 0x00FF00, kWhite, 0));
    EXPECT_FALSE(readBack({testPattern(), testPattern(), encodeToken({std::nullopt, 'A'}).confirm}));
}

} // namespace
} // namespace glimra::screenlink
