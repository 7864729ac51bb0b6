#include "tools/strip/waiter.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <vector>

namespace glimra::tools {

Waiter::Waiter() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    m_signals = signalfd(-1, &signals, SFD_CLOEXEC);
    if (m_signals < 0)
        throw std::system_error(errno, std::generic_category(), "signalfd");
}

Waiter::~Waiter() {
    close(m_signals);
}

std::optional<int> Waiter::wait(std::initializer_list<int> files,
                                std::optional<std::chrono::milliseconds> time) {
    std::vector<pollfd> polled = {{m_signals, POLLIN, 0}};
    for (const int file : files)
        polled.push_back({file, POLLIN, 0});
    if (poll(polled.data(), polled.size(), time ? static_cast<int>(time->count()) : -1) < 0 && errno != EINTR)
        throw std::system_error(errno, std::generic_category(), "poll");
    signalfd_siginfo signal{};
    if (polled[0].revents && read(m_signals, &signal, sizeof signal) == sizeof signal)
        throw Stopped{static_cast<int>(signal.ssi_signo)};
    const auto ready = std::find_if(polled.begin(), polled.end(), [](const pollfd& p) { return p.revents; });
    return ready != polled.end() ? std::optional(ready->fd) : std::nullopt;
}

} // namespace glimra::tools
