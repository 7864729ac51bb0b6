#pragma once

#include "platform/system_services.h"
#include "profiles/canvas_buffer.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::profiles {

// The file in which all profiles travel: little-endian binary32 values without header, length or padding,
// parted into sections by a marker. In order: marker, application version, 1.0, blink time, nine cooldown
// flags (0.0 or 1.0); marker; for each profile its thirteen colours as red, green and blue; marker; for each
// profile the colour slot of each key of the canvas; marker. The file holds no count of keys: both sides know
// the canvas.

inline constexpr std::string_view kProfileFileExtension = "keycolormap";
/// A record must have fewer values than this.
inline constexpr std::size_t kRecordCapacity = 1500;

/// All profiles, as a file holds them. Profile n is at index n - 1.
struct ProfileFileContent {
    float applicationVersion = 0.0F;
    /// Seconds.
    double blinkTime = 0.0;
    std::array<bool, lighting::kProfileCount> useCooldowns{};
    std::array<lighting::ColorSet, lighting::kProfileCount> colorSets{};
    /// 528 entries each when read from a file.
    std::array<lighting::KeyMap, lighting::kProfileCount> keyMaps{};
};

/// The values of a file while they are put together.
class ProfileRecord {
public:
    /// Appends a value. The value that fills the record makes it begin anew, and it counts as overflowed from
    /// then on.
    void appendValue(float value);

    bool overflowed() const { return m_overflowed; }
    /// The values so far, as the file's bytes.
    std::vector<std::uint8_t> bytes() const;

private:
    std::array<float, kRecordCapacity> m_values{};
    std::size_t m_position = 0;
    bool m_overflowed = false;
};

ProfileRecord encodeProfiles(const ProfileFileContent& content, const CanvasKeyCodes& canvasKeyCodes);

/// Bytes that a file takes with this canvas; no reader needs more of it.
std::size_t profileFileSize(const CanvasKeyCodes& canvasKeyCodes);

/// Reads a file's bytes; none when a marker is missing or a flag is neither 0 nor 1. Every other value is
/// limited to its range, and NaN counts as 0. When the file is too short, its last value is read again, and
/// each such read is reported in the system log.
std::optional<ProfileFileContent> decodeProfiles(std::span<const std::uint8_t> bytes,
                                                 const CanvasKeyCodes& canvasKeyCodes,
                                                 platform::SystemLog& systemLog);

/// A version as the file holds it: 0 where the text is no decimal number.
float versionNumber(std::string_view version);

} // namespace glimra::profiles
