#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::desktop::addon {

/// The numbers of a version such as "0.10.2". Numbers missing at the end count as 0.
class Version {
public:
    /// None when the text is not numbers separated by points, or is too long.
    static std::optional<Version> fromText(std::string_view text);

    /// As it was written.
    const std::string& text() const { return m_text; }

    friend std::weak_ordering operator<=>(const Version& left, const Version& right);

private:
    std::string m_text;
    /// Without trailing zeros.
    std::vector<unsigned> m_numbers;
};

/// What an add-on's TOC file says about it.
struct Toc {
    /// None when the version is missing or cannot be read.
    std::optional<Version> version;
    /// The files that make up the add-on, including the TOC file itself and the icon. Names as the TOC file
    /// has them.
    std::vector<std::string> files;
};

inline constexpr std::string_view kAddonName = "Glimraxmit";
inline constexpr std::string_view kTocName = "Glimraxmit.toc";

Toc parseToc(std::string_view text);

} // namespace glimra::desktop::addon
