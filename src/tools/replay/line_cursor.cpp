#include "tools/replay/line_cursor.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>

namespace glimra::tools {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kDigits = "0123456789";

std::string quoted(std::string_view text) {
    constexpr std::size_t kShown = 40;
    return '"' + std::string(text.substr(0, kShown)) + (text.size() > kShown ? "..." : "") + '"';
}

[[noreturn]] void fail(std::string_view what, std::string_view problem, std::string_view text) {
    throw LineError(std::string(what) + ' ' + std::string(problem) + ": " + quoted(text));
}

template <class Number>
[[noreturn]] void failRange(std::string_view what, const Range<Number>& range, std::string_view text) {
    std::ostringstream problem;
    problem << "is out of range (" << range.lowest << " to " << range.highest << ')';
    fail(what, problem.str(), text);
}

struct Decimal {
    bool isNegative;
    std::string_view whole;
    /// Digits behind the point; empty without a point.
    std::string_view fraction;
};

std::optional<Decimal> splitDecimal(std::string_view text) {
    Decimal decimal{text.starts_with('-'), {}, {}};
    if (decimal.isNegative)
        text.remove_prefix(1);
    const std::size_t point = text.find('.');
    decimal.whole = text.substr(0, point);
    if (point != std::string_view::npos)
        decimal.fraction = text.substr(point + 1);
    const auto isDigits = [](std::string_view part) {
        return !part.empty() && part.find_first_not_of(kDigits) == std::string_view::npos;
    };
    if (!isDigits(decimal.whole) || (point != std::string_view::npos && !isDigits(decimal.fraction)))
        return std::nullopt;
    return decimal;
}

template <class Number>
std::optional<Number> fromChars(std::string_view text) {
    Number number{};
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc{} || result.ptr != text.data() + text.size())
        return std::nullopt;
    return number;
}

/// A JSON number: without point and exponent an integer, else a double.
platform::Number jsonNumber(std::string_view what, std::string_view text) {
    // Only the syntax is left to the library, which would make a double of an integer that does not fit.
    const bool isJson = nlohmann::json::accept(text);
    const bool isNumber = isJson && (text.starts_with('-') || kDigits.find(text.front()) != kDigits.npos);
    if (!isNumber)
        fail(what, "is no JSON number of a size that can be stored", text);
    if (text.find_first_of(".eE") != std::string_view::npos)
        return nlohmann::json::parse(text).get<double>();
    if (const auto integer = fromChars<std::int64_t>(text))
        return *integer;
    fail(what, "is out of range for an integer", text);
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<std::uint8_t> byteOf(std::string_view twoDigits) {
    std::uint8_t byte = 0;
    const auto result = std::from_chars(twoDigits.data(), twoDigits.data() + twoDigits.size(), byte, 16);
    if (twoDigits.size() != 2 || result.ec != std::errc{} || result.ptr != twoDigits.data() + 2)
        return std::nullopt;
    return byte;
}

} // namespace

void LineCursor::skipBlanks() {
    m_rest.remove_prefix(std::min(m_rest.find_first_not_of(kBlanks), m_rest.size()));
}

void LineCursor::expectEnd() const {
    if (!atEnd())
        throw LineError("too many arguments: " + quoted(m_rest));
}

std::string_view LineCursor::take(std::size_t length, std::string_view what) {
    const std::string_view taken = m_rest.substr(0, length);
    m_rest.remove_prefix(length);
    if (!m_rest.empty() && kBlanks.find(m_rest.front()) == std::string_view::npos)
        fail(what, "must be followed by a blank, not by", m_rest);
    skipBlanks();
    return taken;
}

std::string_view LineCursor::word(std::string_view what) {
    if (atEnd())
        throw LineError(std::string(what) + " is missing");
    return take(std::min(m_rest.find_first_of(kBlanks), m_rest.size()), what);
}

std::string_view LineCursor::upTo(char mark, std::string_view what) {
    const std::size_t length = m_rest.find(mark);
    if (length == std::string_view::npos)
        fail(what, std::string("has no ") + mark, m_rest);
    const std::string_view taken = m_rest.substr(0, length);
    m_rest.remove_prefix(length + 1);
    return taken;
}

std::string LineCursor::string(std::string_view what) {
    if (atEnd())
        throw LineError(std::string(what) + " is missing");
    if (!isAt('"'))
        fail(what, "is no string in double quotes", m_rest);
    std::size_t end = 1;
    while (end < m_rest.size() && m_rest[end] != '"')
        end += m_rest[end] == '\\' ? 2 : 1;
    if (end >= m_rest.size())
        fail(what, "is a string cut off", m_rest);
    const std::string_view text = take(end + 1, what);
    const nlohmann::json value = nlohmann::json::parse(text, nullptr, false);
    if (!value.is_string())
        fail(what, "is no JSON string", text);
    return value.get<std::string>();
}

double LineCursor::number(std::string_view what, Range<double> range) {
    const std::string_view text = word(what);
    if (!splitDecimal(text))
        fail(what, "is no plain decimal number", text);
    const std::optional<double> value = fromChars<double>(text);
    if (!value || *value < range.lowest || *value > range.highest)
        failRange(what, range, text);
    return *value;
}

int LineCursor::integer(std::string_view what, Range<int> range) {
    const std::string_view text = word(what);
    const std::optional<Decimal> decimal = splitDecimal(text);
    if (!decimal || !decimal->fraction.empty())
        fail(what, "is no whole number", text);
    const std::optional<int> value = fromChars<int>(text);
    if (!value || *value < range.lowest || *value > range.highest)
        failRange(what, range, text);
    return *value;
}

platform::Duration LineCursor::seconds(std::string_view what, platform::Duration longest) {
    constexpr std::size_t kDecimals = 9;
    const std::string_view text = word(what);
    const std::optional<Decimal> decimal = splitDecimal(text);
    if (!decimal)
        fail(what, "is no plain decimal number", text);
    if (decimal->fraction.find_first_not_of('0', kDecimals) != std::string_view::npos)
        fail(what, "is finer than a nanosecond", text);
    std::string fraction(decimal->fraction.substr(0, kDecimals));
    fraction.resize(kDecimals, '0');
    const auto whole = fromChars<std::int64_t>(decimal->whole);
    const std::chrono::seconds limit = std::chrono::floor<std::chrono::seconds>(longest);
    if (decimal->isNegative || !whole || *whole > limit.count())
        failRange(what, Range<std::int64_t>{0, limit.count()}, text);
    return std::chrono::seconds(*whole) + std::chrono::nanoseconds(*fromChars<std::int64_t>(fraction));
}

platform::StoredValue LineCursor::settingValue(std::string_view what) {
    if (isAt('"'))
        return string(what);
    if (isAt('['))
        return numberArray(what);
    const std::string_view text = word(what);
    if (text == "true" || text == "false")
        return text == "true";
    return std::visit([](auto number) { return platform::StoredValue(number); }, jsonNumber(what, text));
}

platform::NumberArray LineCursor::numberArray(std::string_view what) {
    const std::size_t end = m_rest.find(']');
    if (end == std::string_view::npos)
        fail(what, "is an array cut off", m_rest);
    std::string_view items = take(end + 1, what).substr(1, end - 1);
    platform::NumberArray numbers;
    if (trimmed(items).empty())
        return numbers;
    for (std::size_t comma = 0; comma != std::string_view::npos;) {
        comma = items.find(',');
        numbers.push_back(jsonNumber(what, trimmed(items.substr(0, comma))));
        if (comma != std::string_view::npos)
            items.remove_prefix(comma + 1);
    }
    return numbers;
}

std::uint32_t LineCursor::rgb(std::string_view what) {
    const std::string_view text = word(what);
    std::uint32_t color = 0;
    if (text.size() != 6)
        fail(what, "is no colour of six hexadecimal digits", text);
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const std::optional<std::uint8_t> byte = byteOf(text.substr(i, 2));
        if (!byte)
            fail(what, "is no colour of six hexadecimal digits", text);
        color = color << 8U | *byte;
    }
    return color;
}

platform::Data LineCursor::bytes(std::string_view what) {
    const std::string_view text = word(what);
    platform::Data data;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const std::optional<std::uint8_t> byte = byteOf(text.substr(i, 2));
        if (!byte)
            fail(what, "is no pairs of hexadecimal digits", text);
        data.push_back(*byte);
    }
    return data;
}

} // namespace glimra::tools
