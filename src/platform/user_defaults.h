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

/// What a setting can hold. A colour in its stored form is Data (see profiles/color_archive.h).
using StoredValue = std::variant<bool, std::int64_t, double, std::string, NumberArray, Data>;

/// The settings, kept between runs: values of several types under text keys. Main thread only.
///
/// A store hands back what was stored, whatever its type; `stored_values.h` reads it as the type that is
/// wanted.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// The value under `key`; none when there is none or it is of no type the store knows.
    virtual std::optional<StoredValue> get(std::string_view key) const = 0;
    /// Stores a value. It reaches the disk later, and as a whole: a kill leaves the old or the new settings.
    virtual void set(std::string_view key, StoredValue value) = 0;
    /// Every key with its value.
    virtual std::map<std::string, StoredValue, std::less<>> all() const = 0;
};

} // namespace glimra::platform
