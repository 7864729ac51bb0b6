#pragma once

#include "desktop/services/unique_fd.h"
#include "platform/whole_file.h"

#include <filesystem>

namespace glimra::desktop::addon {

// Files that are on the disk for good once a function has returned. Failures that have no other way out are
// thrown as std::system_error or std::runtime_error.

/// Throws what errno says unless `isDone`.
void check(bool isDone);

/// At most the first 16 MiB, which is more than any file of an add-on.
platform::FileContent readFile(const std::filesystem::path& file);
/// Writes a new file with the same content; what is there already is never replaced.
void copyFile(const std::filesystem::path& from, const std::filesystem::path& to);

UniqueFd openFolder(const std::filesystem::path& folder);
/// The content of a folder must be on the disk before the folder is renamed. File systems that cannot flush a
/// folder (EINVAL) are let off.
void flush(int descriptor);

} // namespace glimra::desktop::addon
