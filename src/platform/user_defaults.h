#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace glimra::platform {

using Number = std::variant<std::int64_t, double>;
using NumberArray = std::vector<Number>;
using Data = std::vector<std::uint8_t>;

/// What a setting can hold. A stored colour is Data (see profiles/color_archive.h).
using StoredValue = std::variant<bool, std::int64_t, double, std::string, NumberArray, Data>;

/// The settings, kept between runs: values of several types under text keys. Main thread only.
///
/// A store returns each value with the type it was stored with; `stored_values.h` converts it to the wanted
/// type.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// The value under `key`; none when it is absent or has a type that the store does not know.
    virtual std::optional<StoredValue> get(std::string_view key) const = 0;
    /// Stores a value. It is written to the disk later, all settings at once: if the program is killed,
    /// either the old or the new settings remain.
    virtual void set(std::string_view key, StoredValue value) = 0;
    /// Every key with its value.
    virtual std::map<std::string, StoredValue, std::less<>> all() const = 0;
};

} // namespace glimra::platform
