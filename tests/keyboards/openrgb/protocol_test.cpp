#include "keyboards/openrgb/encoder.h"
#include "keyboards/openrgb/packet.h"

#include <gmock/gmock.h>

namespace glimra::keyboards::openrgb {
namespace {

using Payload = std::vector<std::uint8_t>;
using tests::encodeDevice;
using tests::ServerDevice;

class ControllerData : public testing::TestWithParam<std::uint32_t> {};

INSTANTIATE_TEST_SUITE_P(EveryVersion, ControllerData, testing::Range(0U, kNewestVersion + 1));

TEST_P(ControllerData, IsReadWithAllThatMatters) {
    const ServerDevice device = tests::smallKeyboard();
    const auto read = readController(encodeDevice(device, GetParam()), GetParam());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->name, "Small Board");
    EXPECT_EQ(read->serial, "S1");
    EXPECT_EQ(read->location, device.location);
    EXPECT_EQ(read->leds, device.leds);
    EXPECT_EQ(read->colors, device.colors);
    ASSERT_EQ(read->modes.size(), 2U);
    EXPECT_EQ(read->modes[0].block, tests::encodeMode(device.modes[0], GetParam()));
    ASSERT_EQ(read->zones.size(), 3U);
    EXPECT_EQ(read->zones[2].firstLed, 2U);

    const auto full = readController(encodeDevice(tests::fullKeyboard(), GetParam()), GetParam());
    ASSERT_TRUE(full);
    EXPECT_EQ(full->zones[0].matrix.cells.size(), 6U * 21U);
}

TEST_P(ControllerData, IsRefusedWhenAnyOfItIsMissingOrLeftOver) {
    const Payload whole = encodeDevice(tests::smallKeyboard(), GetParam());
    for (std::size_t size = 0; size < whole.size(); ++size) {
        Payload cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_FALSE(readController(cut, GetParam())) << size;
        // A liar's, too, who says that it is all there.
        if (size >= 4) {
            Payload honestSize;
            appendU32(honestSize, static_cast<std::uint32_t>(size));
            std::ranges::copy(honestSize, cut.begin());
            EXPECT_FALSE(readController(cut, GetParam())) << size;
        }
    }
    Payload longer;
    appendU32(longer, static_cast<std::uint32_t>(whole.size() + 1));
    appendBytes(longer, Bytes(whole).subspan(4));
    longer.push_back(0);
    EXPECT_FALSE(readController(longer, GetParam()));
}

TEST(ControllerDataLimits, MatrixMustHaveAsManyCellsAsItSays) {
    ServerDevice device = tests::fullKeyboard();
    device.zones[0].height = 0x10000;
    device.zones[0].width = 0x10000; // as a 32-bit product, 0 cells
    EXPECT_FALSE(readController(encodeDevice(device, 5), 5));
    device.zones[0].height = 21;
    device.zones[0].width = 6;
    EXPECT_TRUE(readController(encodeDevice(device, 5), 5));
}

TEST(PerLedMode, PrefersDirectAndNeverOneThatWearsTheDeviceOut) {
    const auto choice = [](const std::vector<Mode>& modes) { return perLedMode(modes); };
    const Mode rainbow{.name = "Rainbow", .flags = 0x41, .colorMode = 2, .block = {}};
    const Mode painted{.name = "Painted", .flags = Mode::kPerLedFlag, .colorMode = 1, .block = {}};
    const Mode custom{.name = "Custom", .flags = Mode::kPerLedFlag, .colorMode = 1, .block = {}};
    const Mode direct{.name = "Direct", .flags = Mode::kPerLedFlag, .colorMode = 1, .block = {}};
    Mode saving = direct;
    saving.flags |= Mode::kSavesItselfFlag;
    EXPECT_EQ(choice({rainbow, painted, custom, direct}), 3U);
    EXPECT_EQ(choice({rainbow, painted, custom}), 2U);
    EXPECT_EQ(choice({rainbow, painted}), 1U);
    EXPECT_EQ(choice({saving, painted}), 1U);
    EXPECT_EQ(choice({rainbow, saving}), std::nullopt);
}

/// All packets of a stream that comes in pieces of this size.
std::vector<Packet> readInPieces(PacketReader& reader, const Payload& stream, std::size_t piece) {
    std::vector<Packet> packets;
    for (std::size_t at = 0; at < stream.size(); at += piece) {
        Bytes part = Bytes(stream).subspan(at, std::min(piece, stream.size() - at));
        while (std::optional<Packet> packet = reader.take(part))
            packets.push_back(std::move(*packet));
    }
    return packets;
}

TEST(PacketReader, FindsPacketsHoweverTheyAreSplitAndKeepsOnlyWhatIsRead) {
    Payload stream = numberPacket(PacketId::ProtocolVersion, 0, 5);
    appendBytes(stream, packet(PacketId::DeviceListUpdated, 0));
    appendBytes(stream, packet(static_cast<PacketId>(1150), 3, Payload(100000, 7)));
    appendBytes(stream, packet(PacketId::ControllerData, 9, encodeDevice(tests::fullKeyboard(), 5)));
    for (const std::size_t piece :
         {std::size_t{1}, std::size_t{15}, std::size_t{17}, std::size_t{4096}, stream.size()}) {
        PacketReader reader;
        const std::vector<Packet> packets = readInPieces(reader, stream, piece);
        ASSERT_EQ(packets.size(), 4U);
        EXPECT_FALSE(reader.failed());
        EXPECT_EQ(packets[0].payload, (Payload{5, 0, 0, 0}));
        EXPECT_TRUE(packets[1].is(PacketId::DeviceListUpdated));
        EXPECT_TRUE(packets[2].payload.empty());
        EXPECT_EQ(packets[3].device, 9U);
        EXPECT_TRUE(readController(packets[3].payload, 5));
    }
}

} // namespace
} // namespace glimra::keyboards::openrgb
