#include "desktop/services/xdg_folders.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

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

/// Links are not followed.
bool isOursAlone(const std::filesystem::path& folder) {
    struct stat status {};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
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

std::filesystem::path configurationFolder() {
    std::filesystem::path folder = variable("XDG_CONFIG_HOME");
    if (folder.is_absolute())
        return folder;
    const std::filesystem::path home = variable("HOME");
    return home.is_absolute() ? home / ".config" : std::filesystem::path();
}

std::filesystem::path runtimeFolder() {
    const std::filesystem::path folder = variable("XDG_RUNTIME_DIR");
    return folder.is_absolute() && isOursAlone(folder) ? folder : std::filesystem::path();
}

std::filesystem::path socketFolder() {
    if (std::filesystem::path folder = runtimeFolder(); !folder.empty())
        return folder;
    std::filesystem::path folder = "/tmp/glimra-" + std::to_string(::geteuid());
    ::mkdir(folder.c_str(), S_IRWXU);
    return isOursAlone(folder) ? folder : std::filesystem::path();
}

std::string runtimeFolderComplaint() {
    const std::string folder = variable("XDG_RUNTIME_DIR");
    if (folder.empty() || !runtimeFolder().empty())
        return {};
    return "XDG_RUNTIME_DIR names " + folder +
           ", which is no folder of yours alone, and is not used. Its mode should be 700.";
}

} // namespace glimra::desktop
