#include "screenlink/strip_decoder.h"

#include <gmock/gmock.h>

namespace glimra::screenlink {
namespace {

using testing::ElementsAre;

constexpr Cell kDark{};
constexpr Cell kWhite{true, true, true};

/// A frame for `character` with its data cells in `color`.
Cells frameCells(char character, bool confirm, Cell color = kWhite, bool hold = false) {
    Cells cells{};
    cells[0] = cells[9] = kWhite;
    cells[1] = confirm ? kWhite : kDark;
    cells[10] = hold ? kWhite : kDark;
    for (std::size_t bit = 0; bit < 7; ++bit)
        if ((character >> (6 - bit)) & 1)
            cells[2 + bit] = color;
    return cells;
}

/// What an assembler makes of frames given one after another, "" where nothing comes.
class Frames {
public:
    std::string show(const Cells& cells) {
        const std::optional<Frame> frame = decodeFrame(cells);
        const std::optional<Token> token = frame ? m_assembler.accept(*frame) : std::nullopt;
        return token ? token->text() : "";
    }

private:
    TokenAssembler m_assembler;
};

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

TEST(StripDecoder, CharacterNeedsAnnounceAndConfirm) {
    Frames frames;
    EXPECT_EQ(frames.show(frameCells('A', false)), "");
    EXPECT_EQ(frames.show(frameCells('A', true)), "A");
    EXPECT_EQ(frames.show(frameCells('A', true)), ""); // still on screen

    EXPECT_EQ(frames.show(frameCells('A', false)), "");
    EXPECT_EQ(frames.show(frameCells('B', true)), ""); // torn, and forgets A
    EXPECT_EQ(frames.show(frameCells('A', true)), "");
}

TEST(StripDecoder, InvalidAndHeldFramesChangeNothing) {
    Frames frames;
    frames.show(frameCells('A', false));
    Cells broken = frameCells('B', false);
    broken[9] = kDark;
    EXPECT_EQ(frames.show(broken), "");
    broken[9] = kWhite;
    broken[0] = kDark;
    EXPECT_EQ(frames.show(broken), "");
    EXPECT_EQ(frames.show(Cells{}), "");
    EXPECT_EQ(frames.show(frameCells('B', false, kWhite, true)), "");
    EXPECT_EQ(frames.show(frameCells('A', true, kWhite, true)), "A"); // hold says nothing in a confirm frame
}

TEST(StripDecoder, ColourOfTheConfirmFrameGivesThePrefix) {
    const std::vector<std::pair<Cell, std::string>> rules{
        {{true, false, false}, "`A"},
        {{false, false, true}, "[A"},
        {{false, true, false}, "]A"},
        {{true, false, true}, "{A"},
        {{false, true, true}, "}A"},
        {{true, true, false}, "A"},
        {kWhite, "A"},
    };
    for (const auto& [color, token] : rules) {
        Frames frames;
        frames.show(frameCells('A', false, {true, false, false})); // an announce frame's colour says nothing
        EXPECT_EQ(frames.show(frameCells('A', true, color)), token);
    }
    Frames frames;
    frames.show(frameCells('\0', false));
    EXPECT_EQ(frames.show(frameCells('\0', true)), std::string(1, '\0'));

    // Mixed colours: red only where it outnumbers green and blue together.
    Cells mixed = frameCells('\x70', true, {true, false, false});
    mixed[2] = {true, true, false};
    EXPECT_EQ(decodeFrame(mixed)->prefix, '`');
    mixed[3] = {true, false, true};
    mixed[4] = {true, true, false};
    EXPECT_EQ(decodeFrame(mixed)->prefix, std::nullopt);
}

} // namespace
} // namespace glimra::screenlink
