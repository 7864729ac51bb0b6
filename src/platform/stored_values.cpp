#include "platform/stored_values.h"

#include <cmath>

namespace glimra::platform {

namespace {

/// The value under `key` as a number; Booleans become 0 or 1.
std::optional<Number> storedNumber(const UserDefaults& defaults, std::string_view key) {
    const std::optional<StoredValue> value = defaults.get(key);
    if (!value)
        return std::nullopt;
    if (const auto* flag = std::get_if<bool>(&*value))
        return Number{std::int64_t{*flag}};
    if (const auto* integer = std::get_if<std::int64_t>(&*value))
        return Number{*integer};
    if (const auto* real = std::get_if<double>(&*value))
        return Number{*real};
    return std::nullopt;
}

/// `value` is what was read for the setting.
template <class Value, class Factory>
Value valueOrFactory(const SettingsReader& reader, std::optional<Value> value,
                     const Setting<Factory>& setting) {
    return reader.checked(std::move(value), setting.key, setting.complaint).value_or(Value(setting.factory));
}

} // namespace

std::optional<std::int64_t> toInteger(const Number& number) {
    if (const auto* integer = std::get_if<std::int64_t>(&number))
        return *integer;
    const double whole = std::trunc(std::get<double>(number));
    constexpr double kLimit = 9223372036854775808.0; // 2^63, the first double that no longer fits
    if (!(whole >= -kLimit && whole < kLimit))
        return std::nullopt;
    return static_cast<std::int64_t>(whole);
}

std::optional<bool> storedBool(const UserDefaults& defaults, std::string_view key) {
    const std::optional<double> number = storedDouble(defaults, key);
    if (!number)
        return std::nullopt;
    return *number != 0.0;
}

std::optional<std::int64_t> storedInteger(const UserDefaults& defaults, std::string_view key) {
    const std::optional<Number> number = storedNumber(defaults, key);
    return number ? toInteger(*number) : std::nullopt;
}

std::optional<double> storedDouble(const UserDefaults& defaults, std::string_view key) {
    const std::optional<Number> number = storedNumber(defaults, key);
    if (!number)
        return std::nullopt;
    const double real = std::visit([](auto value) { return static_cast<double>(value); }, *number);
    if (!std::isfinite(real))
        return std::nullopt;
    return real;
}

std::optional<std::string> storedString(const UserDefaults& defaults, std::string_view key) {
    const std::optional<StoredValue> value = defaults.get(key);
    if (!value || !std::holds_alternative<std::string>(*value))
        return std::nullopt;
    return std::get<std::string>(*value);
}

void reportSetting(SystemLog& systemLog, std::string_view key, std::string_view complaint) {
    systemLog.write("Glimra: setting \"" + std::string(key) + "\" " + std::string(complaint));
}

bool SettingsReader::value(const Setting<bool>& setting) const {
    return valueOrFactory(*this, storedBool(defaults, setting.key), setting);
}

double SettingsReader::value(const Setting<double>& setting) const {
    return valueOrFactory(*this, storedDouble(defaults, setting.key), setting);
}

std::string SettingsReader::value(const Setting<std::string_view>& setting) const {
    return valueOrFactory(*this, storedString(defaults, setting.key), setting);
}

} // namespace glimra::platform
