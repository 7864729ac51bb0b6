#pragma once

#include "platform/run_loop.h"
#include "platform/user_defaults.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace glimra::tools {

/// What is wrong with a line of a script.
class LineError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

template <class Number>
struct Range {
    Number lowest;
    Number highest;
};

/// Takes a line of a script apart from left to right. Arguments are parted by spaces and tabs. Every function
/// throws LineError, with `what` as the argument's name, when what it takes is not there or not understood.
/// The line must outlive the cursor and the words taken.
class LineCursor {
public:
    explicit LineCursor(std::string_view line) : m_rest(line) { skipBlanks(); }

    bool atEnd() const { return m_rest.empty(); }
    /// Whether the next character after any blanks is `character`.
    bool isAt(char character) const { return m_rest.starts_with(character); }
    void expectEnd() const;

    /// All up to the next blank.
    std::string_view word(std::string_view what);
    /// All up to `mark`, which is taken too.
    std::string_view upTo(char mark, std::string_view what);
    /// A JSON string in double quotes.
    std::string string(std::string_view what);
    /// A plain decimal.
    double number(std::string_view what, Range<double> range);
    /// A plain decimal without a point.
    int integer(std::string_view what, Range<int> range);
    /// Seconds, as a plain decimal of 0 or more, in whole nanoseconds.
    platform::Duration seconds(std::string_view what, platform::Duration longest);
    /// A JSON value that a setting can hold: `true`, `false`, a number, a string or an array of numbers.
    platform::StoredValue settingValue(std::string_view what);
    /// A colour as six hexadecimal digits, red first.
    std::uint32_t rgb(std::string_view what);
    /// Bytes as pairs of hexadecimal digits.
    platform::Data bytes(std::string_view what);

private:
    void skipBlanks();
    /// Takes `length` characters; a blank or the end of the line must follow.
    std::string_view take(std::size_t length, std::string_view what);
    platform::NumberArray numberArray(std::string_view what);

    std::string_view m_rest;
};

} // namespace glimra::tools
