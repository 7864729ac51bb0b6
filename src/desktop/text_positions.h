#pragma once

#include <QString>

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

/// How many bytes from the start of `utf8` stand for `units` units; all of them when there are not so many.
std::size_t bytesOfUnits(std::string_view utf8, std::size_t units);

} // namespace glimra::desktop
