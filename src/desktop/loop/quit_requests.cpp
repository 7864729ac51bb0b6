#include "desktop/loop/quit_requests.h"

#include <QCoreApplication>
#include <QEvent>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <system_error>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace glimra::desktop {

namespace {

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler can use only global data; ours only writes to this descriptor.
volatile std::sig_atomic_t wakeUpDescriptor = -1;

void wakeUp(int) {
    const int savedErrno = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(wakeUpDescriptor, &one, sizeof one);
    errno = savedErrno;
}

bool isIgnored(int signal) {
    struct sigaction present = {};
    return sigaction(signal, nullptr, &present) == 0 && present.sa_handler == SIG_IGN;
}

void install(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signal : kSignals)
        if (signal != SIGHUP || !isIgnored(signal))
            sigaction(signal, &action, nullptr);
}

} // namespace

QuitRequests::QuitRequests(std::function<void()> onRequest) : m_onRequest(std::move(onRequest)) {
    const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category(), "eventfd");
    wakeUpDescriptor = descriptor;
    m_notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this, descriptor] {
        std::uint64_t count = 0;
        if (read(descriptor, &count, sizeof count) == sizeof count)
            m_onRequest();
    });
    install(wakeUp);
    QCoreApplication::instance()->installEventFilter(this);
}

QuitRequests::~QuitRequests() {
    install(SIG_DFL);
    const int descriptor = std::exchange(wakeUpDescriptor, -1);
    m_notifier.reset();
    close(descriptor);
}

bool QuitRequests::eventFilter(QObject* watched, QEvent* event) {
    // Qt sends this when the session ends, and would close the windows one by one and leave at once.
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance())
        return QObject::eventFilter(watched, event);
    event->accept();
    m_onRequest();
    return true;
}

} // namespace glimra::desktop
