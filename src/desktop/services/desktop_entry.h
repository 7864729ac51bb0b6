#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::desktop {

/// The content of a desktop entry file. Texts are the file's bytes with escapes replaced, in the file's
/// encoding; empty when a key is absent. https://specifications.freedesktop.org/desktop-entry-spec/latest/
struct DesktopEntry {
    std::string name;
    std::string icon;
    std::string tryExec;
    std::string exec;
    /// The working folder of the program.
    std::string path;
    /// Not shown in menus; mostly handlers of file types.
    bool noDisplay = false;
    /// Deleted by the user.
    bool hidden = false;
    bool terminal = false;
};

/// Reads a desktop entry file; none when it does not describe an application.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view file);

/// The words of the command (program first) that an entry's Exec line gives when it is started without files.
/// `file` is the entry's path. None when the line is invalid or expands to an unreasonably long text.
///
/// Beyond the standard, words are unquoted as its authors' tools and many entries expect: a backslash outside
/// quotes protects the next character, and single quotes quote. No shell is involved, so other characters
/// have no special meaning.
std::optional<std::vector<std::string>> execArguments(const DesktopEntry& entry, std::string_view file);

} // namespace glimra::desktop
