#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace glimra::desktop {

/// The folders for installed data, in order of preference.
/// https://specifications.freedesktop.org/basedir-spec/latest/
std::vector<std::filesystem::path> dataFolders();

/// The folder of the user's configuration; empty when nobody says where it is.
std::filesystem::path configurationFolder();

/// The folder for run-time files that XDG_RUNTIME_DIR names; empty unless it is this user's and nobody else
/// may look into it: whoever can change it could answer in our name.
std::filesystem::path runtimeFolder();
/// That folder or, without it, one of this user in /tmp, which is made for the purpose; empty when another
/// user holds that place.
std::filesystem::path socketFolder();
/// Why the folder that XDG_RUNTIME_DIR names is not used, as a sentence; empty when there is nothing to say.
std::string runtimeFolderComplaint();

} // namespace glimra::desktop
