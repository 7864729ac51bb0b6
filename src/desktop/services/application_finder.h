#pragma once

#include "desktop/services/process.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace glimra::desktop {

/// The command that starts the application whose desktop entry has this name: an entry with exactly this name
/// before one that differs in letter case alone, and among equals the one in the earlier folder.
///
/// Entries that the user has deleted or that no menu shows, that need a terminal, or whose program is not
/// there, count as absent. Looks at a bounded number of bounded files; reads the disk, so not for the main
/// thread.
std::optional<Command> findApplication(std::string_view name,
                                       const std::vector<std::filesystem::path>& dataFolders);

} // namespace glimra::desktop
