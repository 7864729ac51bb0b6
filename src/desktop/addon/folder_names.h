#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace glimra::desktop::addon {

/// Whether two names differ in the case of their letters A to Z alone. To the game, under Wine, these are the
/// same; disks may think otherwise.
bool isSameName(std::string_view left, std::string_view right);

/// The names in one folder, read once; of a folder that cannot be read, none. At most 20,000 are read.
class FolderNames {
public:
    explicit FolderNames(std::filesystem::path folder);

    const std::vector<std::string>& all() const& { return m_names; }
    std::vector<std::string> all() && { return std::move(m_names); }
    /// What has this name: one that has it exactly before one that differs in case.
    std::optional<std::filesystem::path> find(std::string_view name) const;
    /// The same, if it is a folder or a link to one.
    std::optional<std::filesystem::path> findFolder(std::string_view name) const;

private:
    std::filesystem::path m_folder;
    std::vector<std::string> m_names;
};

} // namespace glimra::desktop::addon
