#pragma once

#include "platform/user_defaults.h"

namespace glimra::simulated {

/// Settings that are kept only as long as the object.
class InMemoryDefaults final : public platform::UserDefaults {
public:
    std::optional<platform::StoredValue> get(std::string_view key) const override;
    void set(std::string_view key, platform::StoredValue value) override;
    std::map<std::string, platform::StoredValue, std::less<>> all() const override { return m_values; }

private:
    std::map<std::string, platform::StoredValue, std::less<>> m_values;
};

} // namespace glimra::simulated
