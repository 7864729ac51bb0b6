#include "keyboards/openrgb/encoder.h"
#include "keyboards/openrgb/keyboard_choice.h"
#include "keyboards/openrgb/packet.h"

#include <gmock/gmock.h>

namespace glimra::keyboards::openrgb {
namespace {

using Payload = std::vector<std::uint8_t>;
using tests::encodeDevice;

class ControllerData : public testing::TestWithParam<std::uint32_t> {};

INSTANTIATE_TEST_SUITE_P(EveryVersion, ControllerData, testing::Range(0U, kNewestVersion + 1));

TEST_P(ControllerData, IsReadWithAllThatMatters) {
    for (const Controller& device : {tests::smallKeyboard(), tests::fullKeyboard()}) {
        const auto read = readController(encodeDevice(device, GetParam()), GetParam());
        ASSERT_TRUE(read);
        EXPECT_EQ(read->name + read->serial + read->location, device.name + device.serial + device.location);
        EXPECT_EQ(read->leds, device.leds);
        EXPECT_EQ(read->colors, device.colors);
        ASSERT_EQ(read->modes.size(), 2U);
        EXPECT_EQ(read->modes[0].block, tests::encodeMode(device.modes[0], GetParam()));
        ASSERT_EQ(read->zones.size(), device.zones.size());
        EXPECT_EQ(read->zones.back().firstLed, device.zones.back().firstLed);
        EXPECT_EQ(read->zones[0].matrix.cells, device.zones[0].matrix.cells);
    }
}

TEST_P(ControllerData, IsRefusedWhenAnyOfItIsMissingOrLeftOver) {
    const Payload whole = encodeDevice(tests::smallKeyboard(), GetParam());
    for (std::size_t size = 0; size <= whole.size() + 1; ++size) {
        Payload other = whole;
        other.resize(size);
        EXPECT_EQ(readController(other, GetParam()).has_value(), size == whole.size()) << size;
        // A liar's, too, who says that it is all there.
        Payload honestSize;
        appendU32(honestSize, static_cast<std::uint32_t>(size));
        std::copy_n(honestSize.begin(), std::min(size, honestSize.size()), other.begin());
        EXPECT_EQ(readController(other, GetParam()).has_value(), size == whole.size()) << size;
    }
}

TEST(ControllerDataLimits, MatrixMustHaveAsManyCellsAsItSays) {
    Controller device = tests::fullKeyboard();
    Matrix& matrix = device.zones[0].matrix;
    matrix.height = matrix.width = 0x10000; // as a 32-bit product, 0 cells
    EXPECT_FALSE(readController(encodeDevice(device, 5), 5));
    matrix.height = 21;
    matrix.width = 6;
    EXPECT_TRUE(readController(encodeDevice(device, 5), 5));
}

TEST(PerLedMode, PrefersDirectAndNeverOneThatWearsTheDeviceOut) {
    const auto mode = [](const char* name, std::uint32_t flags) {
        return Mode{.name = name, .flags = flags, .colorMode = flags == 0x41 ? 2U : 1U, .block = {}};
    };
    const Mode rainbow = mode("Rainbow", 0x41);
    const Mode painted = mode("Painted", Mode::kPerLedFlag);
    const Mode custom = mode("Custom", Mode::kPerLedFlag);
    const Mode saving = mode("Direct", Mode::kPerLedFlag | Mode::kSavesItselfFlag);
    EXPECT_EQ(perLedMode({rainbow, painted, custom, mode("Direct", Mode::kPerLedFlag)}), 3U);
    EXPECT_EQ(perLedMode({rainbow, saving, painted, custom}), 3U);
    EXPECT_EQ(perLedMode({rainbow, saving, painted}), 2U);
    EXPECT_EQ(perLedMode({rainbow, saving}), std::nullopt);
}

TEST(Printable, LeavesNothingThatATerminalOrALogCouldObey) {
    EXPECT_EQ(printable("a\x7F\n\xC2\x9F\u00A0\u00E9\u200D\u200E\u2028\u2066\u20AC\U0001F600\xED\xA0\x80\xF5"
                        "\x80\x80\x80\xC3"),
              "a????\u00A0\u00E9\u200D?????????\u20AC\U0001F600????????");
}

TEST(PacketReader, FindsPacketsHoweverTheyAreSplitAndKeepsOnlyWhatIsRead) {
    Payload stream = numberPacket(PacketId::ProtocolVersion, 0, 5);
    appendBytes(stream, packet(PacketId::DeviceListUpdated, 0));
    appendBytes(stream, packet(static_cast<PacketId>(250), 3, Payload(100000, 7)));
    appendBytes(stream, packet(PacketId::ControllerData, 9, encodeDevice(tests::fullKeyboard(), 5)));
    for (const std::size_t piece : {std::size_t{1}, std::size_t{17}, std::size_t{4096}, stream.size()}) {
        PacketReader reader;
        std::vector<Packet> packets;
        for (Bytes rest(stream); !rest.empty(); rest = rest.subspan(std::min(piece, rest.size()))) {
            Bytes part = rest.first(std::min(piece, rest.size()));
            while (std::optional<Packet> packet = reader.take(part))
                packets.push_back(std::move(*packet));
        }
        ASSERT_EQ(packets.size(), 4U);
        EXPECT_EQ(packets[0].payload, (Payload{5, 0, 0, 0}));
        EXPECT_TRUE(packets[1].is(PacketId::DeviceListUpdated));
        EXPECT_TRUE(packets[2].payload.empty());
        EXPECT_EQ(packets[3].device, 9U);
        EXPECT_TRUE(readController(packets[3].payload, 5));
    }
}

} // namespace
} // namespace glimra::keyboards::openrgb
