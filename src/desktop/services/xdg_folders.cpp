#include "desktop/services/xdg_folders.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

namespace glimra::desktop {

namespace {

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

/// The standard says that relative folders must be ignored.
void addAbsolute(std::vector<std::filesystem::path>& folders, const std::filesystem::path& folder) {
    if (folder.is_absolute())
        folders.push_back(folder);
}

} // namespace

std::vector<std::filesystem::path> dataFolders() {
    std::vector<std::filesystem::path> folders;
    const std::string home = variable("XDG_DATA_HOME");
    addAbsolute(folders, home.empty() ? std::filesystem::path(variable("HOME")) / ".local/share"
                                      : std::filesystem::path(home));
    std::string list = variable("XDG_DATA_DIRS");
    if (list.empty())
        list = "/usr/local/share:/usr/share";
    for (std::size_t begin = 0; begin < list.size();) {
        const std::size_t end = std::min(list.find(':', begin), list.size());
        addAbsolute(folders, list.substr(begin, end - begin));
        begin = end + 1;
    }
    return folders;
}

} // namespace glimra::desktop
