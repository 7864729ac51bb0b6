#pragma once

#include <utility>

#include <unistd.h>

namespace glimra::desktop {

/// Owns a file descriptor and closes it; -1 for none.
class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int descriptor) : m_descriptor(descriptor) {}
    UniqueFd(UniqueFd&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        std::swap(m_descriptor, other.m_descriptor);
        other.reset();
        return *this;
    }
    ~UniqueFd() { reset(); }

    int get() const { return m_descriptor; }
    explicit operator bool() const { return m_descriptor >= 0; }
    /// Gives the descriptor away; the caller closes it.
    [[nodiscard]] int release() { return std::exchange(m_descriptor, -1); }
    void reset() {
        if (const int descriptor = std::exchange(m_descriptor, -1); descriptor >= 0)
            ::close(descriptor);
    }

private:
    int m_descriptor = -1;
};

} // namespace glimra::desktop
