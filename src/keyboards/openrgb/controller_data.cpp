#include "keyboards/openrgb/controller_data.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace glimra::keyboards::openrgb {

namespace {

// The fewest bytes that one of each takes, in any version of the protocol.
constexpr std::size_t kSmallestText = 2;
constexpr std::size_t kSmallestMode = 40;
constexpr std::size_t kSmallestZone = 20;
constexpr std::size_t kSmallestSegment = 14;

constexpr std::uint32_t kResizableForEffectsOnly = 1;

std::vector<Rgb> readColors(ByteReader& reader) {
    std::vector<Rgb> colors(reader.count(kColorBytes));
    for (Rgb& color : colors) {
        const Bytes bytes = reader.bytes(kColorBytes);
        color = {bytes[0], bytes[1], bytes[2]};
    }
    return colors;
}

Mode readMode(ByteReader& reader, std::uint32_t version) {
    const Bytes before = reader.rest();
    Mode mode;
    mode.name = reader.text();
    if (version < 6)
        reader.i32();
    mode.flags = reader.u32();
    reader.bytes(8); // limits of the speed
    if (version >= 3)
        reader.bytes(8); // limits of the brightness
    reader.bytes(8);     // limits of the number of colours
    reader.u32();        // speed
    if (version >= 3)
        reader.u32(); // brightness
    reader.u32();     // direction
    mode.colorMode = reader.u32();
    reader.bytes(kColorBytes * reader.count(kColorBytes));
    const Bytes block = before.first(before.size() - reader.rest().size());
    if (!reader.failed())
        mode.block.assign(block.begin(), block.end());
    return mode;
}

std::vector<Mode> readModes(ByteReader& reader, std::size_t count, std::uint32_t version) {
    std::vector<Mode> modes;
    while (modes.size() < count && !reader.failed())
        modes.push_back(readMode(reader, version));
    return modes;
}

Matrix readMatrix(ByteReader& reader) {
    ByteReader inner(reader.bytes(reader.u16()));
    if (inner.atEnd() || reader.failed())
        return {};
    Matrix matrix;
    matrix.height = inner.u32();
    matrix.width = inner.u32();
    if (inner.failed() || std::uint64_t{matrix.height} * matrix.width * 4 != inner.rest().size()) {
        reader.fail();
        return {};
    }
    matrix.cells.resize(inner.rest().size() / 4);
    for (std::uint32_t& cell : matrix.cells)
        cell = inner.u32();
    return matrix;
}

void skipSegments(ByteReader& reader, std::uint32_t version) {
    for (std::size_t left = reader.count(kSmallestSegment); left > 0 && !reader.failed(); --left) {
        reader.text();
        reader.bytes(12); // type, first LED, number of LEDs
        if (version >= 6) {
            readMatrix(reader);
            reader.u32();
        }
    }
}

Zone readZone(ByteReader& reader, std::uint32_t version) {
    reader.text();
    reader.bytes(12); // type, limits of the number of LEDs
    Zone zone;
    zone.ledCount = reader.u32();
    zone.matrix = readMatrix(reader);
    if (version >= 4)
        skipSegments(reader, version);
    if (version >= 5 && (reader.u32() & kResizableForEffectsOnly) != 0)
        zone.ledCount = std::min<std::size_t>(zone.ledCount, 1);
    if (version >= 6) {
        reader.i32();
        readModes(reader, reader.count(kSmallestMode), version);
        reader.text();
    }
    return zone;
}

std::vector<Zone> readZones(ByteReader& reader, std::uint32_t version) {
    std::vector<Zone> zones(reader.count(kSmallestZone));
    std::size_t firstLed = 0;
    for (Zone& zone : zones) {
        zone = readZone(reader, version);
        zone.firstLed = firstLed;
        firstLed += zone.ledCount;
        if (reader.failed())
            return {};
    }
    return zones;
}

std::vector<std::string> readLeds(ByteReader& reader, std::uint32_t version) {
    std::vector<std::string> leds(reader.count(version < 6 ? kSmallestText + 4 : kSmallestText));
    for (std::string& led : leds) {
        led = reader.text();
        if (version < 6)
            reader.u32();
        if (reader.failed())
            return {};
    }
    return leds;
}

void skipEnd(ByteReader& reader, std::uint32_t version) {
    if (version >= 5) {
        for (std::size_t left = reader.count(kSmallestText); left > 0 && !reader.failed(); --left)
            reader.text();
        reader.u32(); // flags
    }
    if (version >= 6) {
        reader.text();
        reader.bytes(reader.u32());
    }
}

} // namespace

std::optional<Controller> readController(Bytes payload, std::uint32_t version) {
    ByteReader reader(payload);
    if (reader.u32() != payload.size())
        return std::nullopt;
    Controller controller;
    controller.type = reader.i32();
    controller.name = reader.text();
    if (version >= 1)
        reader.text(); // vendor
    reader.text();     // description
    reader.text();     // the device's own version
    controller.serial = reader.text();
    controller.location = reader.text();
    const std::size_t modeCount = reader.count(kSmallestMode);
    controller.activeMode = reader.i32();
    controller.modes = readModes(reader, modeCount, version);
    controller.zones = readZones(reader, version);
    controller.leds = readLeds(reader, version);
    controller.colors = readColors(reader);
    skipEnd(reader, version);
    if (!reader.atEnd())
        return std::nullopt;
    // When the zones do not fit the LEDs, places are unknown, but the LEDs can still be found by their names.
    if (!controller.zones.empty() &&
        controller.zones.back().firstLed + controller.zones.back().ledCount > controller.leds.size())
        controller.zones.clear();
    return controller;
}

std::optional<std::size_t> perLedMode(const std::vector<Mode>& modes) {
    const auto found = [&](auto suits) -> std::optional<std::size_t> {
        const auto mode = std::ranges::find_if(modes, suits);
        if (mode == modes.end())
            return std::nullopt;
        return static_cast<std::size_t>(mode - modes.begin());
    };
    const auto isSafe = [](const Mode& mode) { return (mode.flags & Mode::kSavesItselfFlag) == 0; };
    for (const std::string_view name : {"Direct", "Custom"})
        if (const auto mode = found([&](const Mode& m) { return m.name == name && isSafe(m); }))
            return mode;
    return found([&](const Mode& m) {
        return (m.flags & Mode::kPerLedFlag) != 0 && m.colorMode == Mode::kPerLedColors && isSafe(m);
    });
}

} // namespace glimra::keyboards::openrgb
