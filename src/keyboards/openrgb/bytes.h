#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace glimra::keyboards::openrgb {

using Bytes = std::span<const std::uint8_t>;

/// A color on the wire: red, green, blue, 0.
inline constexpr std::size_t kColorBytes = 4;

/// Reads little-endian values one after the other. The first value that would reach beyond the end makes the
/// reader fail; that value and all later ones are 0 or empty. Allocates nothing.
class ByteReader {
public:
    explicit ByteReader(Bytes bytes) : m_rest(bytes) {}

    bool failed() const { return m_failed; }
    bool atEnd() const { return m_rest.empty() && !m_failed; }
    /// The bytes that were not read yet.
    Bytes rest() const { return m_rest; }

    std::uint16_t u16() { return static_cast<std::uint16_t>(number(2)); }
    std::uint32_t u32() { return number(4); }
    std::int32_t i32() { return static_cast<std::int32_t>(number(4)); }
    Bytes bytes(std::size_t size);
    /// Reads a 16-bit length, then a text of that length. The text ends at its first NUL.
    std::string_view text();
    /// Reads a 16-bit number of things, each of which takes at least `smallest` bytes. Fails when so many of
    /// them do not fit in the bytes that are left.
    std::size_t count(std::size_t smallest);
    void fail();

private:
    std::uint32_t number(std::size_t size);

    Bytes m_rest;
    bool m_failed = false;
};

// These append a value to `to`, numbers in little-endian order.
void appendU16(std::vector<std::uint8_t>& to, std::uint16_t value);
void appendU32(std::vector<std::uint8_t>& to, std::uint32_t value);
void appendBytes(std::vector<std::uint8_t>& to, Bytes bytes);

} // namespace glimra::keyboards::openrgb
