#include "desktop/settings/stored_value_text.h"

#include "platform/hexadecimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace glimra::desktop {

using platform::Data;
using platform::kHexDigits;
using platform::Number;
using platform::NumberArray;
using platform::StoredValue;

namespace {

constexpr std::string_view kTextTag = "text:";
constexpr std::string_view kAsciiTag = "ascii:";
constexpr std::string_view kHexTag = "hex:";

template <class Value>
std::string shortest(Value value) {
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return {buffer.data(), end};
}

std::string textOf(std::int64_t integer) {
    return shortest(integer);
}

std::string textOf(double real) {
    std::string text = shortest(real);
    if (text.find_first_not_of("-0123456789") == std::string::npos)
        text += ".0";
    return text;
}

std::string textOf(bool flag) {
    return flag ? "true" : "false";
}

std::string textOf(const std::string& text) {
    return std::string(kTextTag) + text;
}

std::string textOf(const NumberArray& numbers) {
    std::string text = "[";
    for (const Number& number : numbers) {
        if (text.size() > 1)
            text += ' ';
        text += std::visit([](auto value) { return textOf(value); }, number);
    }
    return text + "]";
}

std::string textOf(const Data& data) {
    if (std::ranges::all_of(data, [](std::uint8_t byte) { return byte >= 0x20 && byte < 0x7F; }))
        return std::string(kAsciiTag).append(data.begin(), data.end());
    return std::string(kHexTag) + platform::hexadecimal(data);
}

template <class Value>
std::optional<Value> wholeNumber(std::string_view text) {
    Value value{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc{} || result.ptr != end)
        return std::nullopt;
    return value;
}

std::optional<Number> numberFromText(std::string_view text) {
    // Digits alone that fit no integer are damaged, not a double.
    if (text.find_first_not_of("-0123456789") == std::string_view::npos) {
        if (const auto integer = wholeNumber<std::int64_t>(text))
            return Number{*integer};
        return std::nullopt;
    }
    if (const auto real = wholeNumber<double>(text))
        return Number{*real};
    return std::nullopt;
}

/// Unreadable elements become NaN. None when no element can be read.
std::optional<NumberArray> arrayFromText(std::string_view text) {
    NumberArray numbers;
    bool isWorthIt = text.empty();
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        if (end > 0) {
            const std::optional<Number> number = numberFromText(text.substr(0, end));
            isWorthIt = isWorthIt || number;
            numbers.push_back(number.value_or(std::numeric_limits<double>::quiet_NaN()));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return isWorthIt ? std::optional(std::move(numbers)) : std::nullopt;
}

std::optional<Data> dataFromHex(std::string_view text) {
    if (text.size() % 2 != 0)
        return std::nullopt;
    Data data;
    data.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const std::size_t high = kHexDigits.find(text[i]);
        const std::size_t low = kHexDigits.find(text[i + 1]);
        if (high == std::string_view::npos || low == std::string_view::npos)
            return std::nullopt;
        data.push_back(static_cast<std::uint8_t>(high << 4 | low));
    }
    return data;
}

/// The text after `tag`; none when `text` does not begin with it.
std::optional<std::string_view> after(std::string_view tag, std::string_view text) {
    if (!text.starts_with(tag))
        return std::nullopt;
    return text.substr(tag.size());
}

} // namespace

std::string toText(const StoredValue& value) {
    return std::visit([](const auto& held) { return textOf(held); }, value);
}

std::optional<StoredValue> storedValueFromText(std::string_view text) {
    if (text == "true" || text == "false")
        return text == "true";
    if (const auto characters = after(kTextTag, text))
        return std::string(*characters);
    if (const auto bytes = after(kAsciiTag, text))
        return Data(bytes->begin(), bytes->end());
    if (const auto digits = after(kHexTag, text)) {
        if (std::optional<Data> data = dataFromHex(*digits))
            return std::move(*data);
        return std::nullopt;
    }
    if (text.starts_with('[') && text.ends_with(']')) {
        if (std::optional<NumberArray> numbers = arrayFromText(text.substr(1, text.size() - 2)))
            return std::move(*numbers);
        return std::nullopt;
    }
    if (const std::optional<Number> number = numberFromText(text))
        return std::visit([](auto held) { return StoredValue{held}; }, *number);
    return std::nullopt;
}

} // namespace glimra::desktop
