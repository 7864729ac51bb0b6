#pragma once

#include "keyboards/openrgb/bytes.h"
#include "lighting/color_conversion.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace glimra::keyboards::openrgb {

// Packets of the OpenRGB SDK protocol, as both sides send them: a header of 16 bytes, then the payload.

enum class PacketId : std::uint32_t {
    ControllerCount = 0,
    ControllerData = 1,
    Acknowledgement = 10,
    ProtocolVersion = 40,
    ClientName = 50,
    DeviceListUpdated = 100,
    UpdateLeds = 1050,
    SetCustomMode = 1100,
    UpdateMode = 1101,
};

inline constexpr std::uint32_t kNewestVersion = 6;
inline constexpr std::array<std::uint8_t, 4> kMagic{'O', 'R', 'G', 'B'};
inline constexpr std::size_t kHeaderBytes = 16;
/// No payload is longer, ours or a server's.
inline constexpr std::size_t kMostPayloadBytes = std::size_t{8} << 20;
inline constexpr std::uint32_t kMostControllers = 1024;

struct Packet {
    std::uint32_t device = 0;
    std::uint32_t id = 0;
    std::vector<std::uint8_t> payload;

    bool is(PacketId wanted) const { return id == static_cast<std::uint32_t>(wanted); }
};

/// Finds the packets in what a server sends, however it is split up. Holds at most one packet, of which only
/// bytes that have really come take memory; payloads that nobody here reads are passed over without being
/// kept.
class PacketReader {
public:
    /// Takes bytes until a packet is complete or there are no more, and removes from `bytes` what it took.
    std::optional<Packet> take(Bytes& bytes);
    /// The stream is none of this protocol's; nothing more will be taken from it.
    bool failed() const { return m_failed; }

private:
    void startPacket();

    std::array<std::uint8_t, kHeaderBytes> m_header{};
    std::size_t m_headerBytes = 0;
    Packet m_packet;
    /// Of the payload, still to come.
    std::size_t m_missing = 0;
    bool m_isKept = false;
    bool m_failed = false;
};

// Requests, ready to send.

std::vector<std::uint8_t> packet(PacketId id, std::uint32_t device, Bytes payload = {});
std::vector<std::uint8_t> numberPacket(PacketId id, std::uint32_t device, std::uint32_t number);
std::vector<std::uint8_t> clientNamePacket(const std::string& name);
/// `block` describes the mode as the server sent it.
std::vector<std::uint8_t> updateModePacket(std::uint32_t device, std::size_t modeIndex, Bytes block);

/// Colours of all the LEDs of a device, as one packet that is written again and again.
class ColorPacket {
public:
    ColorPacket() = default;
    /// At most 65535 LEDs, all dark.
    ColorPacket(std::uint32_t device, std::size_t ledCount);

    void set(std::size_t led, lighting::Rgb color);
    Bytes bytes() const { return m_bytes; }

private:
    std::vector<std::uint8_t> m_bytes;
};

/// The devices that a controller-count answer tells of, each by the number that requests for it take, in the
/// server's order; none when the payload is not what that version sends.
std::optional<std::vector<std::uint32_t>> readControllerList(Bytes payload, std::uint32_t version);

} // namespace glimra::keyboards::openrgb
