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
    /// Every change of it is written to the device's own memory, which wears out.
    static constexpr std::uint32_t kSavesItselfFlag = 1U << 9;
    static constexpr std::uint32_t kPerLedColors = 1;

    std::string name;
    std::uint32_t flags = 0;
    std::uint32_t colorMode = 0;
    /// As the server sent it, and wants it back.
    std::vector<std::uint8_t> block;
};

/// LEDs in rows and columns.
struct Matrix {
    static constexpr std::uint32_t kNoLed = 0xFFFFFFFF;

    std::uint32_t height = 0;
    std::uint32_t width = 0;
    /// Row after row, each an LED of the zone or `kNoLed`; height times width.
    std::vector<std::uint32_t> cells;
};

struct Zone {
    /// In the device's list of LEDs.
    std::size_t firstLed = 0;
    std::size_t ledCount = 0;
    Matrix matrix;
};

/// A device, as the controller-data answer describes it.
struct Controller {
    std::int32_t type = 0;
    std::string name;
    std::string serial;
    std::string location;
    std::vector<Mode> modes;
    /// May be beyond the modes, or negative.
    std::int32_t activeMode = 0;
    std::vector<Zone> zones;
    /// The LEDs' names.
    std::vector<std::string> leds;
    /// Normally as many as LEDs; none can be lit beyond it.
    std::vector<Rgb> colors;

    /// How many LEDs can be lit.
    std::size_t litLeds() const { return std::min(leds.size(), colors.size()); }
};

/// Reads the payload of a controller-data answer for any version from 0 to 6. None when it is not, to the
/// last byte, what that version sends. Never takes more memory than a few times the payload's own.
std::optional<Controller> readController(Bytes payload, std::uint32_t version);

/// The mode in which each LED shows the colour that it is given; none when the device has none.
std::optional<std::size_t> perLedMode(const std::vector<Mode>& modes);

} // namespace glimra::keyboards::openrgb
