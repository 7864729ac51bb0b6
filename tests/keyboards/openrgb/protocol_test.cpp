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

TEST_P(ControllerData, WithAnyNumberBlownUpIsNeverTakenForMore) {
    const Payload whole = encodeDevice(tests::smallKeyboard(), GetParam());
    for (std::size_t at = 4; at + 2 <= whole.size(); ++at) {
        Payload blownUp = whole;
        blownUp[at] = blownUp[at + 1] = 0xFF;
        // Bytes of a colour or a name may be anything; numbers of things and lengths may not.
        if (const auto read = readController(blownUp, GetParam())) {
            EXPECT_EQ(read->leds.size(), 6U) << at;
            EXPECT_EQ(read->colors.size(), 6U) << at;
            EXPECT_EQ(read->modes.size(), 2U) << at;
        }
    }
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

TEST(ControllerDataLimits, ZonesThatDoNotFitTheLedsAreIgnored) {
    ServerDevice device = tests::smallKeyboard();
    device.zones[0].ledCount = 0xFFFFFFFF;
    const auto read = readController(encodeDevice(device, 5), 5);
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->zones.empty());
    // A zone that only effects may resize takes one LED, whatever it says.
    device.zones[0].flags = 1;
    device.leds.erase(device.leds.begin());
    EXPECT_EQ(readController(encodeDevice(device, 5), 5)->zones.at(2).firstLed, 1U);
}

TEST(ControllerDataLimits, LengthsOfTextsMayBeZeroAndTextsEndAtTheirNul) {
    Payload payload;
    for (const std::uint32_t number : {0U, 5U})
        appendU32(payload, number);
    appendU16(payload, 6);
    appendBytes(payload, Payload{'A', 'B', 0, 'C', 'D', 0});
    for (int text = 0; text < 5; ++text)
        appendU16(payload, 0);
    appendU16(payload, 0);
    appendU32(payload, 0xFFFFFFFF);
    for (int list = 0; list < 3; ++list)
        appendU16(payload, 0);
    payload[0] = static_cast<std::uint8_t>(payload.size());
    const auto read = readController(payload, 4);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->name, "AB");
    EXPECT_EQ(read->activeMode, -1);
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

TEST(PacketReader, RefusesWhatIsNotOfTheProtocol) {
    Payload tooLong = packet(PacketId::ControllerData, 0);
    tooLong[14] = 0x81;
    const Payload web{'H', 'T', 'T', 'P', '/', '1', '.', '1',  ' ',
                      '4', '0', '0', ' ', 'B', 'a', 'd', '\r', '\n'};
    for (const Payload& stream : {tooLong, web}) {
        PacketReader reader;
        EXPECT_TRUE(readInPieces(reader, stream, 1).empty());
        EXPECT_TRUE(reader.failed());
        Bytes more = stream;
        EXPECT_FALSE(reader.take(more));
    }
}

TEST(ControllerList, HasTheNumbersThatRequestsTake) {
    using testing::ElementsAre;
    using testing::Optional;
    EXPECT_THAT(readControllerList(Payload{2, 0, 0, 0}, 5), Optional(ElementsAre(0, 1)));
    EXPECT_THAT(readControllerList(Payload{2, 0, 0, 0, 7, 0, 0, 0, 9, 0, 0, 0}, 6),
                Optional(ElementsAre(7, 9)));
    EXPECT_FALSE(readControllerList(Payload{2, 0, 0, 0, 7, 0, 0, 0}, 6));
    EXPECT_FALSE(readControllerList(Payload{2, 0, 0, 0, 7, 0, 0, 0, 9, 0, 0, 0}, 5));
    EXPECT_FALSE(readControllerList(Payload{0xFF, 0xFF, 0xFF, 0xFF}, 5));
    EXPECT_FALSE(readControllerList(Payload{2, 0, 0}, 5));
}

} // namespace
} // namespace glimra::keyboards::openrgb
