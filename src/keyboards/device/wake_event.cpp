#include "keyboards/device/wake_event.h"

#include "platform/monotonic_clock.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <system_error>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace glimra::keyboards {

namespace {

bool canBeRead(const pollfd& watched) {
    return (watched.revents & (POLLIN | POLLHUP | POLLERR | POLLNVAL)) != 0;
}

timespec timeLeft(platform::Time deadline) {
    const platform::Duration left = std::max(deadline - platform::monotonicNow(), platform::Duration::zero());
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    return {static_cast<time_t>(seconds.count()), static_cast<long>((left - seconds).count())};
}

} // namespace

WakeEvent::WakeEvent() : m_fd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (m_fd < 0)
        throw std::system_error(errno, std::system_category(), "eventfd");
}

WakeEvent::~WakeEvent() {
    close(m_fd);
}

void WakeEvent::set() {
    eventfd_write(m_fd, 1);
}

void WakeEvent::clear() {
    eventfd_t count = 0;
    eventfd_read(m_fd, &count);
}

bool WakeEvent::isSet() const {
    return waitForInput(m_fd, -1, platform::Time::zero()).first;
}

Woken waitForInput(int first, int second, std::optional<platform::Time> deadline) {
    // poll(2) ignores negative descriptors.
    std::array<pollfd, 2> watched{{{first, POLLIN, 0}, {second, POLLIN, 0}}};
    for (;;) {
        const timespec left = timeLeft(deadline.value_or(platform::Time::zero()));
        const int count = ppoll(watched.data(), watched.size(), deadline ? &left : nullptr, nullptr);
        if (count >= 0)
            return {canBeRead(watched[0]), canBeRead(watched[1])};
        if (errno != EINTR)
            return {};
    }
}

} // namespace glimra::keyboards
