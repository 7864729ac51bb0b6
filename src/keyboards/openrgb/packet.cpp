#include "keyboards/openrgb/packet.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace glimra::keyboards::openrgb {

namespace {

constexpr std::size_t kFirstColor = kHeaderBytes + 4 + 2;

/// The longest payload of this kind of packet that is kept; a longer one is skipped.
std::size_t mostBytesKept(std::uint32_t id) {
    switch (static_cast<PacketId>(id)) {
    case PacketId::ControllerData:
    case PacketId::DeviceChanged:
        return kMostPayloadBytes;
    case PacketId::ControllerCount:
        return 4 + 4 * std::size_t{kMostControllers};
    case PacketId::ProtocolVersion:
    case PacketId::Acknowledgement:
        return 8;
    default:
        return 0;
    }
}

} // namespace

std::optional<Packet> PacketReader::take(Bytes& bytes) {
    while (!m_failed && !bytes.empty()) {
        if (m_headerBytes < kHeaderBytes) {
            m_header[m_headerBytes++] = bytes.front();
            bytes = bytes.subspan(1);
            if (m_headerBytes == kHeaderBytes)
                startPacket();
        } else {
            const Bytes part = bytes.first(std::min(m_missing, bytes.size()));
            if (m_isKept)
                appendBytes(m_packet.payload, part);
            m_missing -= part.size();
            bytes = bytes.subspan(part.size());
        }
        if (m_headerBytes == kHeaderBytes && m_missing == 0 && !m_failed) {
            m_headerBytes = 0;
            return std::exchange(m_packet, {});
        }
    }
    return std::nullopt;
}

void PacketReader::startPacket() {
    ByteReader header(m_header);
    const Bytes magic = header.bytes(kMagic.size());
    m_packet.device = header.u32();
    m_packet.id = header.u32();
    m_missing = header.u32();
    m_isKept = m_missing <= mostBytesKept(m_packet.id);
    m_failed = !std::ranges::equal(magic, kMagic) || m_missing > kMostPayloadBytes;
}

std::vector<std::uint8_t> packet(PacketId id, std::uint32_t device, Bytes payload) {
    assert(payload.size() <= kMostPayloadBytes);
    std::vector<std::uint8_t> bytes(kMagic.begin(), kMagic.end());
    bytes.reserve(kHeaderBytes + payload.size());
    appendU32(bytes, device);
    appendU32(bytes, static_cast<std::uint32_t>(id));
    appendU32(bytes, static_cast<std::uint32_t>(payload.size()));
    appendBytes(bytes, payload);
    return bytes;
}

std::vector<std::uint8_t> numberPacket(PacketId id, std::uint32_t device, std::uint32_t number) {
    std::vector<std::uint8_t> payload;
    appendU32(payload, number);
    return packet(id, device, payload);
}

std::vector<std::uint8_t> clientNamePacket(const std::string& name) {
    std::vector<std::uint8_t> payload(name.begin(), name.end());
    payload.push_back(0);
    return packet(PacketId::ClientName, 0, payload);
}

// The payloads below begin with their own size. A server may crash when that size is wrong, so each is
// computed from what it counts.

std::vector<std::uint8_t> updateModePacket(std::uint32_t device, std::size_t modeIndex, Bytes block) {
    std::vector<std::uint8_t> payload;
    appendU32(payload, static_cast<std::uint32_t>(4 + 4 + block.size()));
    appendU32(payload, static_cast<std::uint32_t>(modeIndex));
    appendBytes(payload, block);
    return packet(PacketId::UpdateMode, device, payload);
}

ColorPacket::ColorPacket(std::uint32_t device, std::size_t ledCount) {
    assert(ledCount <= 0xFFFF);
    std::vector<std::uint8_t> payload;
    appendU32(payload, static_cast<std::uint32_t>(4 + 2 + kColorBytes * ledCount));
    appendU16(payload, static_cast<std::uint16_t>(ledCount));
    payload.resize(payload.size() + kColorBytes * ledCount);
    m_bytes = packet(PacketId::UpdateLeds, device, payload);
}

void ColorPacket::set(std::size_t led, lighting::Rgb color) {
    const std::size_t at = kFirstColor + kColorBytes * led;
    assert(at + kColorBytes <= m_bytes.size());
    m_bytes[at] = color.red;
    m_bytes[at + 1] = color.green;
    m_bytes[at + 2] = color.blue;
}

std::optional<std::vector<std::uint32_t>> readControllerList(Bytes payload, std::uint32_t version) {
    ByteReader reader(payload);
    const std::uint32_t count = reader.u32();
    const bool hasIds = version >= 6;
    if (reader.failed() || count > kMostControllers || reader.rest().size() != (hasIds ? 4 * count : 0))
        return std::nullopt;
    std::vector<std::uint32_t> devices;
    for (std::uint32_t index = 0; index < count; ++index)
        devices.push_back(hasIds ? reader.u32() : index);
    return devices;
}

} // namespace glimra::keyboards::openrgb
