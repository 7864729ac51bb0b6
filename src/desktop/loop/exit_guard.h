#pragma once

#include <functional>

namespace glimra::desktop {

/// Calls a function when the process ends by std::exit while this object lives. Qt does that when the display
/// server goes away, from the middle of whatever the main thread does. One object at a time.
class ExitGuard {
public:
    explicit ExitGuard(std::function<void()> atExit);
    ~ExitGuard();

    ExitGuard(const ExitGuard&) = delete;
    ExitGuard& operator=(const ExitGuard&) = delete;
};

} // namespace glimra::desktop
