// Whatever an OpenRGB server may send: from the stream's bytes to the LEDs that are lit. The first byte of an
// input says in which version and how the rest is read, the second in what pieces it comes.

#include "fuzz/fuzz_target.h"
#include "keyboards/model/keyboard_model.h"
#include "keyboards/openrgb/encoder.h"
#include "keyboards/openrgb/key_names.h"
#include "keyboards/openrgb/packet.h"

#include <algorithm>

namespace {

using namespace glimra::keyboards::openrgb;
using glimra::tests::must;

/// Marks an input that is a controller's description alone, without a packet around it.
constexpr std::uint8_t kBare = 0x80;

void useController(Bytes payload, std::uint32_t version) {
    const std::optional<Controller> controller = readController(payload, version);
    if (!controller)
        return;
    std::size_t bytesOfModes = 0;
    for (const auto& mode : controller->modes)
        bytesOfModes += mode.block.size();
    must(bytesOfModes < payload.size(), "modes are part of the payload");
    if (const std::optional<std::size_t> mode = perLedMode(controller->modes))
        must(*mode < controller->modes.size(), "the mode that is chosen is one of them");

    ColorPacket frame(0, controller->colors.size());
    std::vector<bool> isLit(controller->litLeds());
    for (const LedOfKey& led : ledsOfKeys(*controller)) {
        must(led.led < isLit.size() && !isLit[led.led], "each LED shows one key");
        must(led.key < glimra::keyboards::kLightCount, "each LED shows a key of ours");
        isLit[led.led] = true;
        frame.set(led.led, {1, 2, 3});
    }
    isKeyboard(*controller);
}

void usePacket(const Packet& packet, std::uint32_t version) {
    must(packet.payload.size() <= kMostPayloadBytes, "no payload is longer than allowed");
    if (packet.is(PacketId::ControllerData))
        useController(packet.payload, version);
    else if (packet.is(PacketId::ControllerCount))
        if (const auto list = readControllerList(packet.payload, version))
            must(list->size() <= kMostControllers, "no list is longer than allowed");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2)
        return 0;
    const std::uint32_t version = data[0] % kBare % (kNewestVersion + 1);
    const std::size_t piece = std::size_t{data[1]} + 1;
    const Bytes input = Bytes(data, size).subspan(2);
    if (data[0] >= kBare) {
        useController(input, version);
        return 0;
    }
    PacketReader reader;
    std::size_t kept = 0;
    for (std::size_t at = 0; at < input.size(); at += piece) {
        Bytes part = input.subspan(at, std::min(piece, input.size() - at));
        while (const std::optional<Packet> packet = reader.take(part)) {
            kept += packet->payload.size();
            usePacket(*packet, version);
        }
        must(part.empty() || reader.failed(), "all is taken, or nothing more");
    }
    must(kept <= input.size(), "only what has come takes memory");
    return 0;
}

namespace glimra::tests {

namespace {

void append(std::vector<std::uint8_t>& to, const std::vector<std::uint8_t>& bytes) {
    to.insert(to.end(), bytes.begin(), bytes.end());
}

/// What a server says from the beginning, in one version.
std::vector<std::uint8_t> conversation(std::uint32_t version) {
    std::vector<std::uint8_t> stream{static_cast<std::uint8_t>(version), 99};
    append(stream, numberPacket(PacketId::ProtocolVersion, 0, version));
    std::vector<std::uint8_t> list;
    for (const std::uint32_t number : {2U, 4U, 5U})
        if (list.empty() || version >= 6)
            appendU32(list, number);
    append(stream, packet(PacketId::ControllerCount, 0, list));
    append(stream, packet(PacketId::DeviceListUpdated, 0));
    append(stream, packet(PacketId::ControllerData, 4, encodeDevice(smallKeyboard(), version)));
    append(stream, packet(PacketId::ControllerData, 5, encodeDevice(fullKeyboard(), version)));
    return stream;
}

} // namespace

std::vector<FuzzSeed> fuzzSeeds() {
    std::vector<FuzzSeed> seeds;
    for (std::uint32_t version = 0; version <= kNewestVersion; ++version) {
        const std::string suffix = "-v" + std::to_string(version);
        seeds.push_back({"conversation" + suffix, conversation(version)});
        std::vector<std::uint8_t> bare{static_cast<std::uint8_t>(kBare + version), 0};
        append(bare, encodeDevice(smallKeyboard(), version));
        seeds.push_back({"controller" + suffix, bare});
    }
    return seeds;
}

} // namespace glimra::tests
