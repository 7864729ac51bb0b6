#include "desktop/addon/toc_file.h"

#include <algorithm>
#include <charconv>

namespace glimra::desktop::addon {

namespace {

constexpr std::size_t kLongestVersion = 24;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
/// The path of the add-on's files as the game writes it.
constexpr std::string_view kFolderInGame = "Interface/AddOns/Glimraxmit/";

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

/// The value of a line "## Key: value"; none for other lines.
std::optional<std::string_view> valueOf(std::string_view line, std::string_view key) {
    if (!line.starts_with("##"))
        return std::nullopt;
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || trimmed(line.substr(2, colon - 2)) != key)
        return std::nullopt;
    return trimmed(line.substr(colon + 1));
}

void takeLine(Toc& toc, std::string_view line) {
    if (const auto version = valueOf(line, "Version")) {
        toc.version = Version::fromText(*version);
    } else if (const auto icon = valueOf(line, "IconTexture")) {
        std::string path(*icon);
        std::ranges::replace(path, '\\', '/');
        // Most icons are the game's own and need no file.
        if (path.starts_with(kFolderInGame))
            toc.files.push_back(path.substr(kFolderInGame.size()));
    } else if (!line.empty() && !line.starts_with('#')) {
        toc.files.emplace_back(line);
    }
}

} // namespace

std::optional<Version> Version::fromText(std::string_view text) {
    if (text.empty() || text.size() > kLongestVersion)
        return std::nullopt;
    Version version;
    version.m_text = text;
    const char* const end = text.data() + text.size();
    for (const char* at = text.data();; ++at) {
        unsigned number = 0;
        const auto [rest, error] = std::from_chars(at, end, number);
        if (error != std::errc{})
            return std::nullopt;
        version.m_numbers.push_back(number);
        at = rest;
        if (at == end)
            break;
        if (*at != '.')
            return std::nullopt;
    }
    while (!version.m_numbers.empty() && version.m_numbers.back() == 0)
        version.m_numbers.pop_back();
    return version;
}

std::weak_ordering operator<=>(const Version& left, const Version& right) {
    return left.m_numbers <=> right.m_numbers;
}

Toc parseToc(std::string_view text) {
    Toc toc{.version = {}, .files = {std::string(kTocName)}};
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        takeLine(toc, trimmed(text.substr(0, end)));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return toc;
}

} // namespace glimra::desktop::addon
