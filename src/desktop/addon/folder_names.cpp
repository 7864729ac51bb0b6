#include "desktop/addon/folder_names.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace glimra::desktop::addon {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostNames = 20'000;

char toLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

bool isSameName(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, toLower, toLower);
}

FolderNames::FolderNames(fs::path folder) : m_folder(std::move(folder)) {
    std::error_code error;
    auto each = fs::directory_iterator(m_folder, error);
    while (!error && each != fs::end(each) && m_names.size() < kMostNames) {
        m_names.push_back(each->path().filename().string());
        each.increment(error);
    }
    // Sorted, since the order of directory entries is arbitrary.
    std::ranges::sort(m_names);
}

std::optional<fs::path> FolderNames::find(std::string_view name) const {
    if (std::ranges::binary_search(m_names, name))
        return m_folder / name;
    const auto found =
        std::ranges::find_if(m_names, [name](const std::string& each) { return isSameName(each, name); });
    return found == m_names.end() ? std::nullopt : std::optional(m_folder / *found);
}

std::optional<fs::path> FolderNames::findFolder(std::string_view name) const {
    std::optional<fs::path> found = find(name);
    std::error_code ignored;
    return found && fs::is_directory(*found, ignored) ? found : std::nullopt;
}

} // namespace glimra::desktop::addon
