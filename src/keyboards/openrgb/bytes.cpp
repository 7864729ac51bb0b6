#include "keyboards/openrgb/bytes.h"

#include <algorithm>

namespace glimra::keyboards::openrgb {

void ByteReader::fail() {
    m_failed = true;
    m_rest = {};
}

Bytes ByteReader::bytes(std::size_t size) {
    if (size > m_rest.size()) {
        fail();
        return {};
    }
    const Bytes taken = m_rest.first(size);
    m_rest = m_rest.subspan(size);
    return taken;
}

std::uint32_t ByteReader::number(std::size_t size) {
    std::uint32_t value = 0;
    std::size_t shift = 0;
    for (const std::uint8_t byte : bytes(size)) {
        value |= static_cast<std::uint32_t>(byte) << shift;
        shift += 8;
    }
    return value;
}

std::string_view ByteReader::text() {
    const Bytes all = bytes(u16());
    const Bytes cut = all.first(static_cast<std::size_t>(std::ranges::find(all, 0) - all.begin()));
    return {reinterpret_cast<const char*>(cut.data()), cut.size()};
}

std::size_t ByteReader::count(std::size_t smallest) {
    const std::size_t things = u16();
    if (things * smallest > m_rest.size()) {
        fail();
        return 0;
    }
    return things;
}

void appendU16(std::vector<std::uint8_t>& to, std::uint16_t value) {
    to.push_back(static_cast<std::uint8_t>(value & 0xFF));
    to.push_back(static_cast<std::uint8_t>(value >> 8));
}

void appendU32(std::vector<std::uint8_t>& to, std::uint32_t value) {
    appendU16(to, static_cast<std::uint16_t>(value & 0xFFFF));
    appendU16(to, static_cast<std::uint16_t>(value >> 16));
}

void appendBytes(std::vector<std::uint8_t>& to, Bytes bytes) {
    to.insert(to.end(), bytes.begin(), bytes.end());
}

} // namespace glimra::keyboards::openrgb
