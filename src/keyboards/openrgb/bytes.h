#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace glimra::keyboards::openrgb {

using Bytes = std::span<const std::uint8_t>;

/// Reads little-endian values one after the other. What reaches beyond the end is 0 or empty, and from then
/// on the reader has failed and gives nothing else. Allocates nothing.
class ByteReader {
public:
    explicit ByteReader(Bytes bytes) : m_rest(bytes) {}

    bool failed() const { return m_failed; }
    bool atEnd() const { return m_rest.empty() && !m_failed; }
    /// What is left.
    Bytes rest() const { return m_rest; }

    std::uint16_t u16() { return static_cast<std::uint16_t>(number(2)); }
    std::uint32_t u32() { return number(4); }
    std::int32_t i32() { return static_cast<std::int32_t>(number(4)); }
    Bytes bytes(std::size_t size);
    /// A text behind its 16-bit length, cut at its first NUL.
    std::string_view text();
    /// A 16-bit number of things that take at least `smallest` bytes each; fails when they cannot all be
    /// there.
    std::size_t count(std::size_t smallest);
    void fail();

private:
    std::uint32_t number(std::size_t size);

    Bytes m_rest;
    bool m_failed = false;
};

// Little-endian, behind what is there.
void appendU16(std::vector<std::uint8_t>& to, std::uint16_t value);
void appendU32(std::vector<std::uint8_t>& to, std::uint32_t value);
void appendBytes(std::vector<std::uint8_t>& to, Bytes bytes);

} // namespace glimra::keyboards::openrgb
