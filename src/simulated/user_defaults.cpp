#include "simulated/user_defaults.h"

namespace glimra::simulated {

std::optional<platform::StoredValue> InMemoryDefaults::get(std::string_view key) const {
    const auto found = m_values.find(key);
    if (found == m_values.end())
        return std::nullopt;
    return found->second;
}

void InMemoryDefaults::set(std::string_view key, platform::StoredValue value) {
    m_values.insert_or_assign(std::string(key), std::move(value));
}

} // namespace glimra::simulated
