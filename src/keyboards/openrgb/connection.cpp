#include "keyboards/openrgb/connection.h"

#include "platform/monotonic_clock.h"

#include <cerrno>
#include <memory>
#include <system_error>

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace glimra::keyboards::openrgb {

namespace {

constexpr std::size_t kBufferBytes = std::size_t{64} << 10;

using Addresses = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

Addresses numericAddress(const std::string& host, std::uint16_t port) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    // Servers listen on IPv4 only, and "localhost" may mean IPv6.
    const std::string address = host == "localhost" ? "127.0.0.1" : host;
    addrinfo* found = nullptr;
    if (getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found) != 0)
        found = nullptr;
    return {found, &freeaddrinfo};
}

std::string errorText(int error) {
    return std::system_category().message(error);
}

void setOption(int fd, int option) {
    const int on = 1;
    setsockopt(fd, IPPROTO_TCP, option, &on, sizeof on);
}

/// Waits until `fd` can be written to or is broken. False when `deadline` passes or `stop` is set before.
bool waitForOutput(int fd, const WakeEvent& stop, Time deadline) {
    for (;;) {
        const Duration left = deadline - platform::monotonicNow();
        if (left <= Duration::zero())
            return false;
        pollfd watched[] = {{fd, POLLOUT, 0}, {stop.fd(), POLLIN, 0}};
        const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(left).count();
        if (poll(watched, 2, static_cast<int>(milliseconds)) > 0)
            return watched[0].revents != 0;
    }
}

/// How a connection attempt ended: 0 when it succeeded, otherwise the error number.
int pendingError(int fd) {
    int error = 0;
    socklen_t size = sizeof error;
    return getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

int newSocket(const addrinfo& address) {
    return socket(address.ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

} // namespace

std::string Connection::connect(const std::string& host, std::uint16_t port, Time deadline) {
    close();
    const Addresses address = numericAddress(host, port);
    if (!address)
        return "not a numeric address";
    m_fd = newSocket(*address);
    if (m_fd < 0)
        return errorText(errno);
    int error = ::connect(m_fd, address->ai_addr, address->ai_addrlen) == 0 ? 0 : errno;
    if (error == EINPROGRESS) {
        error = waitForOutput(m_fd, m_stop, deadline) ? pendingError(m_fd) : ETIMEDOUT;
    }
    if (error != 0) {
        close();
        return errorText(error);
    }
    setOption(m_fd, TCP_NODELAY);
    m_buffer.resize(kBufferBytes);
    return {};
}

void Connection::close() {
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

bool Connection::send(Bytes bytes, Time deadline) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(m_fd, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent >= 0)
            bytes = bytes.subspan(static_cast<std::size_t>(sent));
        else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            if (!waitForOutput(m_fd, m_stop, deadline))
                return false;
        } else if (errno != EINTR)
            return false;
    }
    return true;
}

bool Connection::waitForInput(Time deadline, Wait wait) {
    const int stop = wait == Wait::UntilStopped ? m_stop.fd() : -1;
    return keyboards::waitForInput(m_fd, stop, deadline).first;
}

std::optional<Bytes> Connection::receive() {
    // Servers send a packet's header and payload separately, and send the second only when the first has been
    // acknowledged. Without this option the kernel delays that acknowledgement. It holds for one receipt
    // only.
    setOption(m_fd, TCP_QUICKACK);
    for (;;) {
        const ssize_t count = recv(m_fd, m_buffer.data(), m_buffer.size(), 0);
        if (count > 0)
            return Bytes(m_buffer).first(static_cast<std::size_t>(count));
        if (count == 0)
            return std::nullopt;
        if (errno == EAGAIN || errno == EWOULDBLOCK)
            return Bytes();
        if (errno != EINTR)
            return std::nullopt;
    }
}

void Connection::finishSending() {
    shutdown(m_fd, SHUT_WR);
}

} // namespace glimra::keyboards::openrgb
