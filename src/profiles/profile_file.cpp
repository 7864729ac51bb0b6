#include "profiles/profile_file.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

namespace glimra::profiles {

namespace {

constexpr float kMarker = 654321.0F;
constexpr float kFormat = 1.0F;
constexpr float kNoLimit = std::numeric_limits<float>::max();
constexpr float kLongestBlinkTime = 5.0F;
constexpr float kLastSlot = 12.0F;
/// Marker, version, format and blink time; the three markers that follow.
constexpr std::size_t kSingleValues = 7;

/// Reads a file's values one after another.
class ProfileFileReader {
public:
    ProfileFileReader(std::span<const std::uint8_t> bytes, platform::SystemLog& systemLog)
        : m_bytes(bytes),
          m_systemLog(systemLog) {}

    /// The next value, limited to the range from 0 to `max`; NaN stays NaN. Past the end it is the last value
    /// again.
    float readNextValue(float max) {
        const float value = next();
        if (value > max)
            return max;
        return value < 0.0F ? 0.0F : value;
    }
    /// The same, with 0 for NaN.
    float readNumber(float max) {
        const float value = readNextValue(max);
        return std::isnan(value) ? 0.0F : value;
    }
    bool readMarker() { return readNextValue(kNoLimit) == kMarker; }

private:
    float next() {
        const std::size_t count = m_bytes.size() / sizeof(float);
        if (m_read < count) {
            ++m_read;
        } else {
            m_systemLog.write("Glimra: Importer bouncing off the ceiling.");
            if (count == 0)
                return 0.0F;
        }
        std::uint32_t bits = 0;
        for (std::size_t i = sizeof(float); i-- > 0;)
            bits = bits << 8U | m_bytes[(m_read - 1) * sizeof(float) + i];
        return std::bit_cast<float>(bits);
    }

    std::span<const std::uint8_t> m_bytes;
    platform::SystemLog& m_systemLog;
    /// Values read so far.
    std::size_t m_read = 0;
};

bool readFlags(ProfileFileReader& reader, ProfileFileContent& content) {
    for (bool& flag : content.useCooldowns) {
        const float value = reader.readNextValue(1.0F);
        if (value != 0.0F && value != 1.0F)
            return false;
        flag = value == 1.0F;
    }
    return true;
}

void readColors(ProfileFileReader& reader, ProfileFileContent& content) {
    for (lighting::ColorSet& set : content.colorSets)
        for (lighting::Color& color : set) {
            color.red = static_cast<double>(reader.readNumber(1.0F));
            color.green = static_cast<double>(reader.readNumber(1.0F));
            color.blue = static_cast<double>(reader.readNumber(1.0F));
        }
}

void readKeyMaps(ProfileFileReader& reader, ProfileFileContent& content,
                 const CanvasKeyCodes& canvasKeyCodes) {
    for (lighting::KeyMap& map : content.keyMaps) {
        map.assign(lighting::kKeyCodeCount, 0);
        for (const lighting::KeyCode code : canvasKeyCodes)
            map[code] = static_cast<int>(reader.readNumber(kLastSlot));
    }
}

} // namespace

void ProfileRecord::appendValue(float value) {
    m_values[m_position++] = value;
    if (m_position == m_values.size()) {
        m_position = 0;
        m_overflowed = true;
    }
}

std::vector<std::uint8_t> ProfileRecord::bytes() const {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(m_position * sizeof(float));
    for (const float value : std::span(m_values).first(m_position)) {
        const auto bits = std::bit_cast<std::uint32_t>(value);
        for (unsigned shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<std::uint8_t>(bits >> shift));
    }
    return bytes;
}

ProfileRecord encodeProfiles(const ProfileFileContent& content, const CanvasKeyCodes& canvasKeyCodes) {
    ProfileRecord record;
    record.appendValue(kMarker);
    record.appendValue(content.applicationVersion);
    record.appendValue(kFormat);
    record.appendValue(static_cast<float>(content.blinkTime));
    for (const bool flag : content.useCooldowns)
        record.appendValue(flag ? 1.0F : 0.0F);
    record.appendValue(kMarker);
    for (const lighting::ColorSet& set : content.colorSets)
        for (const lighting::Color& color : set)
            for (const double component : {color.red, color.green, color.blue})
                record.appendValue(static_cast<float>(component));
    record.appendValue(kMarker);
    for (const lighting::KeyMap& map : content.keyMaps)
        for (const lighting::KeyCode code : canvasKeyCodes)
            record.appendValue(static_cast<float>(code < map.size() ? map[code] : 0));
    record.appendValue(kMarker);
    return record;
}

std::size_t profileFileSize(const CanvasKeyCodes& canvasKeyCodes) {
    constexpr std::size_t kPerProfile = 1 + lighting::kColorSlotCount * 3;
    return (kSingleValues + lighting::kProfileCount * (kPerProfile + canvasKeyCodes.size())) * sizeof(float);
}

std::optional<ProfileFileContent> decodeProfiles(std::span<const std::uint8_t> bytes,
                                                 const CanvasKeyCodes& canvasKeyCodes,
                                                 platform::SystemLog& systemLog) {
    ProfileFileReader reader(bytes, systemLog);
    ProfileFileContent content;
    if (!reader.readMarker())
        return std::nullopt;
    content.applicationVersion = reader.readNextValue(kNoLimit);
    static_cast<void>(reader.readNextValue(kNoLimit));
    content.blinkTime = static_cast<double>(reader.readNumber(kLongestBlinkTime));
    if (!readFlags(reader, content) || !reader.readMarker())
        return std::nullopt;
    readColors(reader, content);
    if (!reader.readMarker())
        return std::nullopt;
    readKeyMaps(reader, content, canvasKeyCodes);
    if (!reader.readMarker())
        return std::nullopt;
    return content;
}

float versionNumber(std::string_view version) {
    float number = 0.0F;
    const auto result = std::from_chars(version.data(), version.data() + version.size(), number);
    const bool whole = result.ec == std::errc{} && result.ptr == version.data() + version.size();
    return whole && std::isfinite(number) ? number : 0.0F;
}

} // namespace glimra::profiles
