#pragma once

#include "keyboards/openrgb/bytes.h"
#include "lighting/color_conversion.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace glimra::keyboards::openrgb {

// The packets of the OpenRGB SDK protocol. Each is a header of 16 bytes and a payload.

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
    DeviceChanged = 1150,
};

inline constexpr std::uint32_t kNewestVersion = 6;
inline constexpr std::array<std::uint8_t, 4> kMagic{'O', 'R', 'G', 'B'};
inline constexpr std::size_t kHeaderBytes = 16;
/// The longest payload that is sent or accepted.
inline constexpr std::size_t kMostPayloadBytes = std::size_t{8} << 20;
inline constexpr std::uint32_t kMostControllers = 1024;

struct Packet {
    std::uint32_t device = 0;
    std::uint32_t id = 0;
    std::vector<std::uint8_t> payload;

    bool is(PacketId wanted) const { return id == static_cast<std::uint32_t>(wanted); }
};

/// Joins the bytes that a server sends into packets, in whatever pieces they come. Holds one packet at most,
/// and takes memory only for bytes that have come, whatever length the header promises. Payloads of kinds
/// that nobody reads are skipped.
class PacketReader {
public:
    /// Takes bytes from the front of `bytes` until a packet is complete or no bytes are left.
    std::optional<Packet> take(Bytes& bytes);
    /// The bytes were not of this protocol. Nothing more is taken.
    bool failed() const { return m_failed; }

private:
    void startPacket();

    std::array<std::uint8_t, kHeaderBytes> m_header{};
    std::size_t m_headerBytes = 0;
    Packet m_packet;
    /// How many bytes of the payload have still to come.
    std::size_t m_missing = 0;
    bool m_isKept = false;
    bool m_failed = false;
};

// Each of these makes a packet that is ready to be sent.

std::vector<std::uint8_t> packet(PacketId id, std::uint32_t device, Bytes payload = {});
std::vector<std::uint8_t> numberPacket(PacketId id, std::uint32_t device, std::uint32_t number);
std::vector<std::uint8_t> clientNamePacket(const std::string& name);
/// Puts the device into a mode. `block` is the mode's description as the server sent it.
std::vector<std::uint8_t> updateModePacket(std::uint32_t device, std::size_t modeIndex, Bytes block);

/// The packet with the colours of all LEDs of a device. The same object is changed and sent again and again.
class ColorPacket {
public:
    ColorPacket() = default;
    /// All LEDs are dark at first. There can be at most 65535.
    ColorPacket(std::uint32_t device, std::size_t ledCount);

    void set(std::size_t led, lighting::Rgb color);
    Bytes bytes() const { return m_bytes; }

private:
    std::vector<std::uint8_t> m_bytes;
};

/// Reads the payload of a controller-count answer: the numbers by which requests name the devices, in the
/// server's order. None when the payload is not of the form of that version.
std::optional<std::vector<std::uint32_t>> readControllerList(Bytes payload, std::uint32_t version);

} // namespace glimra::keyboards::openrgb
