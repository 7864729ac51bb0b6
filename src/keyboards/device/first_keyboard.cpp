#include "keyboards/device/first_keyboard.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include <sys/epoll.h>
#include <unistd.h>

namespace glimra::keyboards {

namespace {

int newWatch() {
    const int fd = epoll_create1(EPOLL_CLOEXEC);
    if (fd < 0)
        throw std::system_error(errno, std::system_category(), "epoll");
    return fd;
}

} // namespace

FirstKeyboard::FirstKeyboard(std::vector<std::unique_ptr<KeyboardDevice>> devices)
    : m_devices(std::move(devices)),
      m_news(newWatch()) {
}

FirstKeyboard::~FirstKeyboard() {
    ::close(m_news);
}

OpenResult FirstKeyboard::look(const WakeEvent& stop) {
    return ask(&KeyboardDevice::look, stop);
}

OpenResult FirstKeyboard::open(const WakeEvent& stop) {
    return ask(&KeyboardDevice::open, stop);
}

OpenResult FirstKeyboard::ask(Search search, const WakeEvent& stop) {
    m_found = nullptr;
    OpenResult none{.text = "No keyboard yet:"};
    for (const auto& device : m_devices) {
        OpenResult result = (device.get()->*search)(stop);
        if (result.found) {
            m_found = device.get();
            for (const auto& other : m_devices)
                if (other != device)
                    other->close();
            return result;
        }
        none.text += " " + result.text;
        none.retryWithin = std::min(none.retryWithin, result.retryWithin);
    }
    watchAll();
    return none;
}

void FirstKeyboard::watchAll() {
    // A device that has a new descriptor by now has closed the one before, which the watch forgets by that.
    for (const auto& device : m_devices) {
        epoll_event event{.events = EPOLLIN, .data = {}};
        if (const int fd = device->watchedFd(); fd >= 0)
            epoll_ctl(m_news, EPOLL_CTL_ADD, fd, &event);
    }
}

DeviceStatus FirstKeyboard::serve() {
    if (m_found != nullptr)
        return m_found->serve();
    DeviceStatus status;
    for (const auto& device : m_devices)
        if (device->serve().kind == DeviceStatus::Kind::LookAgain)
            status.kind = DeviceStatus::Kind::LookAgain;
    watchAll();
    return status;
}

void FirstKeyboard::close() {
    if (m_found != nullptr)
        std::exchange(m_found, nullptr)->close();
}

} // namespace glimra::keyboards
