#pragma once

#include "platform/settings.h"
#include "platform/system_services.h"
#include "platform/user_defaults.h"

namespace glimra::platform {

// Functions that read a setting as a wanted type. Numbers and Booleans are converted into each other (a
// double read as an integer is truncated toward zero). Text, data and arrays are not converted and count as
// absent, as does a double that is not finite or does not fit.

std::optional<bool> storedBool(const UserDefaults& defaults, std::string_view key);
std::optional<std::int64_t> storedInteger(const UserDefaults& defaults, std::string_view key);
std::optional<double> storedDouble(const UserDefaults& defaults, std::string_view key);
std::optional<std::string> storedString(const UserDefaults& defaults, std::string_view key);

/// Writes to the system log that a stored value cannot be used. `complaint` says what is wrong with it and
/// what is used instead.
void reportSetting(SystemLog& systemLog, std::string_view key, std::string_view complaint);

/// Reads settings from `defaults` and reports unusable ones to `systemLog`.
struct SettingsReader {
    const UserDefaults& defaults;
    SystemLog& systemLog;

    /// Returns `value`, which was read for a setting. Reports the setting when it is stored but `value` is
    /// empty.
    template <class Value>
    std::optional<Value> checked(std::optional<Value> value, std::string_view key,
                                 std::string_view complaint) const {
        if (!value && defaults.get(key))
            reportSetting(systemLog, key, complaint);
        return value;
    }

    /// The stored value, or the factory value when there is no usable one.
    bool value(const Setting<bool>& setting) const;
    double value(const Setting<double>& setting) const;
    std::string value(const Setting<std::string_view>& setting) const;
};

/// The number truncated toward zero; none when it is NaN or does not fit.
std::optional<std::int64_t> toInteger(const Number& number);

} // namespace glimra::platform
