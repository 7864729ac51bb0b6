#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::desktop {

/// What a desktop entry file says about an application. Texts are the file's bytes with their escapes undone,
/// in whatever encoding; empty where the file says nothing.
/// https://specifications.freedesktop.org/desktop-entry-spec/latest/
struct DesktopEntry {
    std::string name;
    std::string icon;
    std::string tryExec;
    std::string exec;
    /// The working folder.
    std::string path;
    /// Not for the user's menus: a handler of file types, mostly.
    bool noDisplay = false;
    /// Deleted by the user.
    bool hidden = false;
    bool terminal = false;
};

/// Reads a desktop entry file; none when it is no application's.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view file);

/// The arguments, the program first, that an entry's Exec line stands for when it is started without files.
/// `file` is where the entry is. None when the line is no valid one or stands for an unreasonable lot of
/// text.
///
/// Beyond what the standard rules, words are unquoted as its authors' own tools and many entries' writers
/// understand it: a backslash outside quotes protects the next character, and single quotes do quote.
/// Nothing of it has a meaning to us otherwise; there is no shell.
std::optional<std::vector<std::string>> execArguments(const DesktopEntry& entry, std::string_view file);

} // namespace glimra::desktop
