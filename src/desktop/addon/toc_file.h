#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::desktop::addon {

/// The numbers of a version, "0.10.2"; a number that is missing at the end is 0.
class Version {
public:
    /// None when it is anything but numbers and points, of a reasonable length.
    static std::optional<Version> fromText(std::string_view text);

    /// As it was written.
    const std::string& text() const { return m_text; }

    friend std::weak_ordering operator<=>(const Version& left, const Version& right);

private:
    std::string m_text;
    /// Without zeros at the end.
    std::vector<unsigned> m_numbers;
};

/// What the game's list of an add-on's files says of it.
struct Toc {
    /// None where there is none that can be read.
    std::optional<Version> version;
    /// The files that make up the add-on, the list itself and its icon included. Names, as they stand there.
    std::vector<std::string> files;
};

inline constexpr std::string_view kAddonName = "Glimraxmit";
inline constexpr std::string_view kTocName = "Glimraxmit.toc";

Toc parseToc(std::string_view text);

} // namespace glimra::desktop::addon
