#pragma once

#include <filesystem>
#include <vector>

namespace glimra::desktop {

/// The folders for installed data, in order of preference.
/// https://specifications.freedesktop.org/basedir-spec/latest/
std::vector<std::filesystem::path> dataFolders();

} // namespace glimra::desktop
