#pragma once

#include "platform/run_loop.h"

#include <optional>

namespace glimra::keyboards {

/// A flag by which one thread wakes another. It is also a file descriptor, so that a thread can wait for it
/// and for its sockets at the same time: while the flag is set, `fd()` is readable. Any thread.
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
    /// To be waited for with poll(2), and for nothing else.
    int fd() const { return m_fd; }

private:
    int m_fd;
};

/// Which of the two file descriptors ended a wait; both can be true.
struct Woken {
    bool first = false;
    bool second = false;
};

/// Waits until one of two file descriptors can be read or is broken; -1 stands for none. Waits until
/// `deadline` of CLOCK_MONOTONIC at most, without a deadline for ever. After the deadline neither is true.
Woken waitForInput(int first, int second, std::optional<platform::Time> deadline);

} // namespace glimra::keyboards
