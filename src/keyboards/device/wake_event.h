#pragma once

#include "platform/run_loop.h"

#include <optional>

namespace glimra::keyboards {

/// Something that one thread tells another, and that the other can wait for together with its sockets: once
/// set, `fd()` is readable until it is cleared. Any thread.
class WakeEvent {
public:
    /// Throws std::system_error when the process has no file descriptor left.
    WakeEvent();
    ~WakeEvent();
    WakeEvent(const WakeEvent&) = delete;
    WakeEvent& operator=(const WakeEvent&) = delete;

    void set();
    void clear();
    bool isSet() const;
    /// For poll(2), to wait until it is readable; nothing else.
    int fd() const { return m_fd; }

private:
    int m_fd;
};

/// What ended a wait. Both may have.
struct Woken {
    bool first = false;
    bool second = false;
};

/// Waits until one of two file descriptors (-1: none) can be read or is broken, at most until `deadline` of
/// CLOCK_MONOTONIC; for ever without one.
Woken waitForInput(int first, int second, std::optional<platform::Time> deadline);

} // namespace glimra::keyboards
