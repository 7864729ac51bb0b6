#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace glimra::platform {

/// The result of reading a file: its bytes, or an error.
struct FileContent {
    std::vector<std::uint8_t> bytes;
    /// Empty on success.
    std::string error;
};

/// Reads a file from its beginning, at most `limit` bytes.
FileContent readWholeFile(const std::string& path, std::size_t limit);

/// Writes a file, replacing an existing one. Returns the error, empty on success.
std::string writeWholeFile(const std::string& path, std::span<const std::uint8_t> bytes);

} // namespace glimra::platform
