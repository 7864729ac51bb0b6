#pragma once

#include <mutex>
#include <utility>

namespace glimra::platform {

/// A value that threads share, reachable only through its lock.
template <class Value>
class Locked {
public:
    Locked() = default;
    explicit Locked(Value value) : m_value(std::move(value)) {}

    /// Calls `use` with the value while holding the lock, so other threads see all its changes at once. `use`
    /// must be short and must not access this object.
    template <class Use>
    decltype(auto) with(Use&& use) {
        const std::scoped_lock lock(m_mutex);
        return std::forward<Use>(use)(m_value);
    }
    template <class Use>
    decltype(auto) with(Use&& use) const {
        const std::scoped_lock lock(m_mutex);
        return std::forward<Use>(use)(m_value);
    }

    Value copy() const {
        return with([](const Value& value) { return value; });
    }
    void set(Value value) {
        with([&](Value& current) { current = std::move(value); });
    }

private:
    mutable std::mutex m_mutex;
    Value m_value{};
};

} // namespace glimra::platform
