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

/// Reads a file from its beginning, at most `limit` bytes. A pipe or a device is refused, not waited for.
FileContent readWholeFile(const std::string& path, std::size_t limit);

/// Who may read a file that is written.
enum class FileReaders {
    AsUsual,    ///< what the system grants to new files
    OwnerAlone, ///< from before the first byte on
};

/// Writes a file, replacing an existing one; a pipe or a device is refused. Returns the error, empty on
/// success.
std::string writeWholeFile(const std::string& path, std::span<const std::uint8_t> bytes,
                           FileReaders readers = FileReaders::AsUsual);

} // namespace glimra::platform
