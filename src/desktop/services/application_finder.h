#pragma once

#include "desktop/services/process.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace glimra::desktop {

/// The command that starts the application whose desktop entry has this name. An exact match is preferred to
/// one that differs only in letter case; among equal matches, the earlier folder wins.
///
/// Entries count as absent when the user has deleted them, when no menu shows them, when they need a
/// terminal, or when their program does not exist. Reads a limited number of files of limited size from the
/// disk, so not for the main thread.
std::optional<Command> findApplication(std::string_view name,
                                       const std::vector<std::filesystem::path>& dataFolders);

} // namespace glimra::desktop
