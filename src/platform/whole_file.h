#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace glimra::platform {

/// What became of a file: its bytes, or why not.
struct FileContent {
    std::vector<std::uint8_t> bytes;
    /// Empty when all went well.
    std::string error;
};

/// Reads a file from its beginning, at most `limit` bytes of it.
FileContent readWholeFile(const std::string& path, std::size_t limit);

/// Writes a file, replacing one that is there. Returns why it could not, or nothing.
std::string writeWholeFile(const std::string& path, std::span<const std::uint8_t> bytes);

} // namespace glimra::platform
