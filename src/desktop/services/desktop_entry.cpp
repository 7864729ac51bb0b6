#include "desktop/services/desktop_entry.h"

#include <algorithm>
#include <array>

namespace glimra::desktop {

namespace {

constexpr std::string_view kGroup = "[Desktop Entry]";

std::string_view takeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t";
    const std::size_t begin = text.find_first_not_of(kBlanks);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

/// Escapes that the standard does not define are kept unchanged.
std::string unescaped(std::string_view text) {
    constexpr std::string_view kEscapes = "sntr\\";
    constexpr std::string_view kMeanings = " \n\t\r\\";
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t escape =
            text[i] == '\\' && i + 1 < text.size() ? kEscapes.find(text[i + 1]) : std::string_view::npos;
        plain += escape == std::string_view::npos ? text[i] : kMeanings[escape];
        i += escape == std::string_view::npos ? 0 : 1;
    }
    return plain;
}

struct TextKey {
    std::string_view key;
    std::string DesktopEntry::*field;
};
constexpr std::array<TextKey, 5> kTexts{{
    {"Name", &DesktopEntry::name},
    {"Icon", &DesktopEntry::icon},
    {"TryExec", &DesktopEntry::tryExec},
    {"Exec", &DesktopEntry::exec},
    {"Path", &DesktopEntry::path},
}};

struct FlagKey {
    std::string_view key;
    bool DesktopEntry::*field;
};
constexpr std::array<FlagKey, 3> kFlags{{
    {"NoDisplay", &DesktopEntry::noDisplay},
    {"Hidden", &DesktopEntry::hidden},
    {"Terminal", &DesktopEntry::terminal},
}};

void setField(DesktopEntry& entry, std::string_view key, std::string_view value) {
    for (const TextKey& each : kTexts)
        if (each.key == key)
            entry.*each.field = unescaped(value);
    for (const FlagKey& each : kFlags)
        if (each.key == key)
            entry.*each.field = value == "true";
}

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view file) {
    if (file.find('\0') != std::string_view::npos)
        return std::nullopt;
    while (!file.empty() && trimmed(takeLine(file)) != kGroup) {
    }
    DesktopEntry entry;
    bool isApplication = false;
    while (!file.empty()) {
        const std::string_view line = trimmed(takeLine(file));
        if (line.starts_with('['))
            break;
        const std::size_t equals = line.find('=');
        if (line.starts_with('#') || equals == std::string_view::npos)
            continue;
        const std::string_view key = trimmed(line.substr(0, equals));
        const std::string_view value = trimmed(line.substr(equals + 1));
        if (key == "Type")
            isApplication = value == "Application";
        setField(entry, key, value);
    }
    return isApplication ? std::optional(entry) : std::nullopt;
}

} // namespace glimra::desktop
