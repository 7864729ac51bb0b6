#pragma once

#include "keyboards/openrgb/bytes.h"
#include "lighting/color_conversion.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace glimra::keyboards::openrgb {

using lighting::Rgb;

inline constexpr std::int32_t kKeyboardType = 5;

/// A way in which a device can light up.
struct Mode {
    static constexpr std::uint32_t kPerLedFlag = 1U << 5;
    /// The device saves each change of this mode in its own memory, which wears out by that.
    static constexpr std::uint32_t kSavesItselfFlag = 1U << 9;
    static constexpr std::uint32_t kPerLedColors = 1;

    std::string name;
    std::uint32_t flags = 0;
    std::uint32_t colorMode = 0;
    /// The mode's description as the server sent it. The server wants it back when the mode is chosen.
    std::vector<std::uint8_t> block;
};

/// How the LEDs of a zone are placed, in rows and columns.
struct Matrix {
    static constexpr std::uint32_t kNoLed = 0xFFFFFFFF;

    std::uint32_t height = 0;
    std::uint32_t width = 0;
    /// Row after row, height times width numbers: each is an LED of the zone, or `kNoLed` for an empty place.
    std::vector<std::uint32_t> cells;
};

/// A part of a device, with LEDs that follow each other in the device's list.
struct Zone {
    /// Position in the device's list of LEDs.
    std::size_t firstLed = 0;
    std::size_t ledCount = 0;
    Matrix matrix;
};

/// A device, as a server describes it in its answer to a controller-data request.
struct Controller {
    std::int32_t type = 0;
    std::string name;
    std::string serial;
    std::string location;
    std::vector<Mode> modes;
    /// Position in `modes`. The server may send a wrong one: it may be negative or too large.
    std::int32_t activeMode = 0;
    std::vector<Zone> zones;
    /// The names of the LEDs.
    std::vector<std::string> leds;
    /// The colours of the LEDs. When a server sends fewer colours than LEDs, the LEDs without one cannot be
    /// lit.
    std::vector<Rgb> colors;

    /// How many LEDs can be lit.
    std::size_t litLeds() const { return std::min(leds.size(), colors.size()); }
};

/// Reads the payload of a controller-data answer, for any version of the protocol from 0 to 6. None when the
/// payload is not exactly, to its last byte, of the form of that version. Takes no more memory than a few
/// times that of the payload.
std::optional<Controller> readController(Bytes payload, std::uint32_t version);

/// The position of the mode in which each LED has a colour of its own; none when the device has no such mode.
std::optional<std::size_t> perLedMode(const std::vector<Mode>& modes);

} // namespace glimra::keyboards::openrgb
