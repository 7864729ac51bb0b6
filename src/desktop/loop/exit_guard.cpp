#include "desktop/loop/exit_guard.h"

#include <cstdlib>
#include <utility>

namespace glimra::desktop {

namespace {

// std::exit hands nothing over.
std::function<void()> lastDuty;

void doLastDuty() {
    if (const std::function<void()> duty = std::exchange(lastDuty, nullptr))
        duty();
}

} // namespace

ExitGuard::ExitGuard(std::function<void()> atExit) {
    static const int registered = std::atexit(doLastDuty);
    static_cast<void>(registered);
    lastDuty = std::move(atExit);
}

ExitGuard::~ExitGuard() {
    lastDuty = nullptr;
}

} // namespace glimra::desktop
