#pragma once

#include <filesystem>
#include <string>

namespace glimra::desktop {

/// Whether this program starts when the user logs in: an entry in the folder that the desktop looks through
/// then. Nothing is remembered; each call looks at what is there, which the desktop's own settings may
/// change. https://specifications.freedesktop.org/autostart-spec/latest/
class LoginEntry {
public:
    /// No folder: it is never on, and cannot be.
    LoginEntry() = default;
    /// `configuration` is the folder of the user's configuration, `program` this program's file.
    LoginEntry(const std::filesystem::path& configuration, const std::filesystem::path& program);

    bool isOn() const;
    /// Writes the entry, by which the program starts hidden, or removes it. Returns why it could not, empty
    /// on success.
    std::string set(bool on) const;

private:
    std::filesystem::path m_file;
    std::filesystem::path m_program;
};

/// A path as a word of a desktop entry's Exec line.
std::string execWord(const std::filesystem::path& path);

} // namespace glimra::desktop
