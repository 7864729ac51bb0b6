#pragma once

#include <chrono>
#include <thread>
#ifdef QT_CORE_LIB
#include <QCoreApplication>
#endif

namespace glimra::tests {

/// Waits until `condition` holds, but no longer than `limit`; whether it does. In a program with Qt the main
/// thread's event loop is served meanwhile.
template <class Condition>
bool eventually(Condition&& condition, std::chrono::seconds limit = std::chrono::seconds(20)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
#ifdef QT_CORE_LIB
        QCoreApplication::processEvents();
#endif
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

/// How long it takes, in milliseconds.
template <class Action>
long long millisecondsOf(Action&& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
        .count();
}

} // namespace glimra::tests
