#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace glimra::desktop::addon {

/// Whether two names are equal apart from the case of the letters A to Z. The game, under Wine, does not
/// distinguish case; the file system may.
bool isSameName(std::string_view left, std::string_view right);

/// The names in one folder, read once; empty when the folder cannot be read. At most 20,000 are read.
class FolderNames {
public:
    explicit FolderNames(std::filesystem::path folder);

    const std::vector<std::string>& all() const& { return m_names; }
    std::vector<std::string> all() && { return std::move(m_names); }
    /// The path of the entry with this name. An exact match is preferred to one that differs in case.
    std::optional<std::filesystem::path> find(std::string_view name) const;
    /// Like `find`, but only a folder or a link to one.
    std::optional<std::filesystem::path> findFolder(std::string_view name) const;

private:
    std::filesystem::path m_folder;
    std::vector<std::string> m_names;
};

} // namespace glimra::desktop::addon
