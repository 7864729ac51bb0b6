#pragma once

#include <QString>

#include <initializer_list>
#include <string_view>

namespace glimra::desktop {

// A text of UTF-8 bytes and the same text in a Qt view, which counts in UTF-16 units. A byte stands for a
// fixed number of units, whatever its neighbours (2 for the first byte of a character beyond the basic
// plane, 0 for the bytes that follow a first one, else 1), so positions stay right even where the bytes are
// no UTF-8.

/// The text as a view shows it, with as many units as `unitsIn` counts and line feeds for line ends. What a
/// view would turn into something else, or not show, has a stand-in.
QString viewText(std::string_view utf8);

/// How many units the bytes stand for.
std::size_t unitsIn(std::string_view utf8);

/// A place in the text, as both count it from the start.
struct TextPlace {
    std::size_t bytes = 0;
    std::size_t units = 0;

    friend bool operator==(const TextPlace&, const TextPlace&) = default;
};

/// The place `units` units from the start of `utf8`, found by walking from the nearest of `known`. Between
/// the two units of one character it is the place before or behind both; beyond the end, the end.
TextPlace placeOfUnits(std::string_view utf8, std::size_t units, std::initializer_list<TextPlace> known);

} // namespace glimra::desktop
