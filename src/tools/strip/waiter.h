#pragma once

#include <chrono>
#include <initializer_list>
#include <optional>

namespace glimra::tools {

/// SIGINT or SIGTERM asked the program to stop.
struct Stopped {
    int signal;
};

/// Takes SIGINT and SIGTERM only while it waits, so that nothing else is broken off in the middle. A program
/// has one, made before any thread.
class Waiter {
public:
    Waiter();
    ~Waiter();
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;

    /// Waits until one of the files can be read (or has ended), and returns it; none when `time` has passed
    /// before. Without a time it waits for as long as it takes. Throws Stopped.
    std::optional<int> wait(std::initializer_list<int> files,
                            std::optional<std::chrono::milliseconds> time = std::nullopt);

private:
    int m_signals;
};

} // namespace glimra::tools
