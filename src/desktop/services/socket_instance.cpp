#include "desktop/services/instance_channel.h"

#include "desktop/services/unique_fd.h"

#include <QFile>
#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace glimra::desktop {

namespace {

constexpr int kPatience = 2000;
/// Longer than any command.
constexpr std::size_t kMostBytes = 64;
/// How an answer begins; its text follows, to the end of the connection.
constexpr std::string_view kAccepted = "ok\n";
constexpr std::string_view kRefused = "no\n";
/// Longer than any answer.
constexpr std::size_t kMostAnswerBytes = 1 << 16;

std::optional<sockaddr_un> addressOf(const QByteArray& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= static_cast<qsizetype>(sizeof address.sun_path))
        return std::nullopt;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    return address;
}

UniqueFd newSocket() {
    return UniqueFd(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

const sockaddr* generic(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

/// Whether the program at the other end runs as the same user.
bool isOurs(int fd) {
    ucred credentials{};
    socklen_t size = sizeof credentials;
    return ::getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &credentials, &size) == 0 &&
           credentials.uid == ::geteuid();
}

/// What comes until the other end closes.
std::string receiveAll(int fd) {
    std::string text;
    std::array<char, 4096> buffer{};
    pollfd watched{fd, POLLIN, 0};
    while (text.size() < kMostAnswerBytes && ::poll(&watched, 1, kPatience) > 0) {
        const ssize_t count = ::recv(fd, buffer.data(), buffer.size(), 0);
        if (count <= 0)
            return text;
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return {};
}

/// A connected client: it sends its command in one line and gets an answer.
class Caller final : public QObject {
public:
    Caller(UniqueFd fd, const InstanceChannel::Handler& handler, QObject* parent)
        : QObject(parent),
          m_fd(std::move(fd)),
          m_notifier(m_fd.get(), QSocketNotifier::Read) {
        connect(&m_notifier, &QSocketNotifier::activated, this, [this, &handler] { read(handler); });
        QTimer::singleShot(kPatience, this, &QObject::deleteLater);
    }

private:
    void read(const InstanceChannel::Handler& handler) {
        std::array<char, kMostBytes> buffer{};
        const ssize_t count = ::recv(m_fd.get(), buffer.data(), buffer.size(), 0);
        if (count > 0)
            m_text.append(buffer.data(), static_cast<std::size_t>(count));
        const std::size_t end = m_text.find('\n');
        if (count > 0 && end == std::string::npos && m_text.size() < kMostBytes)
            return;
        m_notifier.setEnabled(false);
        deleteLater();
        const std::optional<InstanceCommand> command =
            end == std::string::npos ? std::nullopt
                                     : commandFromText(std::string_view(m_text).substr(0, end));
        if (!command)
            return;
        const InstanceAnswer answer = handler(*command);
        const std::string text = std::string(answer.isAccepted ? kAccepted : kRefused) + answer.text;
        ::send(m_fd.get(), text.data(), text.size(), MSG_NOSIGNAL);
    }

    UniqueFd m_fd;
    QSocketNotifier m_notifier;
    std::string m_text;
};

class SocketChannel final : public InstanceChannel {
public:
    SocketChannel(const QString& folder, const QString& identity)
        : m_path(folder.isEmpty() ? QByteArray()
                                  : QFile::encodeName(folder + "/glimra" +
                                                      (identity.isEmpty() ? QString() : "-" + identity))) {}
    ~SocketChannel() override {
        // Removed while the lock is held, so that the next instance's socket cannot be removed.
        if (m_listener)
            ::unlink(socketPath().constData());
    }

    Standing claim(Handler handler) override {
        if (m_path.isEmpty())
            return Standing::Unusable;
        m_lock = UniqueFd(::open((m_path + ".lock").constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW,
                                 S_IRUSR | S_IWUSR));
        if (!m_lock)
            return Standing::Unusable;
        if (::flock(m_lock.get(), LOCK_EX | LOCK_NB) != 0)
            return errno == EWOULDBLOCK ? Standing::Second : Standing::Unusable;
        if (!listen())
            return Standing::Unusable;
        m_handler = std::move(handler);
        m_notifier = std::make_unique<QSocketNotifier>(m_listener.get(), QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] { accept(); });
        return Standing::First;
    }

    std::string claimed() const override { return "the lock " + (m_path + ".lock").toStdString(); }

    std::optional<InstanceAnswer> send(const InstanceCommand& command) override {
        const std::optional<sockaddr_un> address = addressOf(socketPath());
        const UniqueFd fd = newSocket();
        const std::string line = toText(command) + "\n";
        const bool isSent =
            !m_path.isEmpty() && address && fd &&
            ::connect(fd.get(), generic(*address), sizeof *address) == 0 && isOurs(fd.get()) &&
            ::send(fd.get(), line.data(), line.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(line.size());
        const std::string answer = isSent ? receiveAll(fd.get()) : std::string();
        const bool isAccepted = answer.starts_with(kAccepted);
        if (!isAccepted && !answer.starts_with(kRefused))
            return std::nullopt;
        return InstanceAnswer{isAccepted, answer.substr(kAccepted.size())};
    }

private:
    QByteArray socketPath() const { return m_path + ".sock"; }

    bool listen() {
        const std::optional<sockaddr_un> address = addressOf(socketPath());
        UniqueFd fd = newSocket();
        if (!address || !fd)
            return false;
        // May be left by a killed instance. We hold the lock, so nobody listens there.
        ::unlink(socketPath().constData());
        const mode_t before = ::umask(S_IRWXG | S_IRWXO);
        const bool bound = ::bind(fd.get(), generic(*address), sizeof *address) == 0;
        ::umask(before);
        if (!bound || ::listen(fd.get(), 4) != 0)
            return false;
        m_listener = std::move(fd);
        return true;
    }

    void accept() {
        UniqueFd fd(::accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (fd && isOurs(fd.get()))
            new Caller(std::move(fd), m_handler, m_notifier.get());
    }

    QByteArray m_path;
    UniqueFd m_lock;
    UniqueFd m_listener;
    Handler m_handler;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace

std::unique_ptr<InstanceChannel> makeSocketChannel(const QString& folder, const QString& identity) {
    return std::make_unique<SocketChannel>(folder, identity);
}

} // namespace glimra::desktop
