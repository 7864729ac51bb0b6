#pragma once

#include "platform/settings.h"
#include "platform/system_services.h"
#include "platform/user_defaults.h"

namespace glimra::platform {

// Settings read as the type that is wanted. Numbers and Booleans are converted among themselves (a double
// read as an integer is truncated toward zero); text, data and arrays are not converted and count as absent,
// and so does a double that is no finite number or does not fit.

std::optional<bool> storedBool(const UserDefaults& defaults, std::string_view key);
std::optional<std::int64_t> storedInteger(const UserDefaults& defaults, std::string_view key);
std::optional<double> storedDouble(const UserDefaults& defaults, std::string_view key);
std::optional<std::string> storedString(const UserDefaults& defaults, std::string_view key);

/// Says in the system log that a setting cannot be used as it is stored: `complaint` is what is wrong with it
/// and what stands in for it.
void reportSetting(SystemLog& systemLog, std::string_view key, std::string_view complaint);

/// Where settings are read, and where it is said that one cannot be used.
struct SettingsReader {
    const UserDefaults& defaults;
    SystemLog& systemLog;

    /// Hands on what was read of a setting; says so when the setting is there and yet nothing could be read.
    template <class Value>
    std::optional<Value> checked(std::optional<Value> value, std::string_view key,
                                 std::string_view complaint) const {
        if (!value && defaults.get(key))
            reportSetting(systemLog, key, complaint);
        return value;
    }

    /// What is stored, or else the setting's factory value.
    bool value(const Setting<bool>& setting) const;
    double value(const Setting<double>& setting) const;
    std::string value(const Setting<std::string_view>& setting) const;
};

/// A number as an integer, truncated toward zero; none when it is no number or does not fit.
std::optional<std::int64_t> toInteger(const Number& number);

} // namespace glimra::platform
