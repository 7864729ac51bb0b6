#pragma once

#include <filesystem>
#include <vector>

namespace glimra::desktop {

/// The folders for data that programs install, the most important first.
/// https://specifications.freedesktop.org/basedir-spec/latest/
std::vector<std::filesystem::path> dataFolders();

} // namespace glimra::desktop
