#include "desktop/loop/quit_signals.h"

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

constexpr std::array kSignals{SIGTERM, SIGINT};

// A signal handler can use only global data; ours only writes to this descriptor.
volatile std::sig_atomic_t wakeUpDescriptor = -1;

void wakeUp(int) {
    const int savedErrno = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(wakeUpDescriptor, &one, sizeof one);
    errno = savedErrno;
}

void install(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signal : kSignals)
        sigaction(signal, &action, nullptr);
}

} // namespace

QuitSignals::QuitSignals(std::function<void()> onSignal) : m_onSignal(std::move(onSignal)) {
    const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category(), "eventfd");
    wakeUpDescriptor = descriptor;
    m_notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this, descriptor] {
        std::uint64_t count = 0;
        if (read(descriptor, &count, sizeof count) == sizeof count)
            m_onSignal();
    });
    install(wakeUp);
}

QuitSignals::~QuitSignals() {
    install(SIG_DFL);
    const int descriptor = std::exchange(wakeUpDescriptor, -1);
    m_notifier.reset();
    close(descriptor);
}

} // namespace glimra::desktop
