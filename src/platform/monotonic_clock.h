#pragma once

#include "platform/run_loop.h"

namespace glimra::platform {

/// The time of CLOCK_MONOTONIC, which the real run loops and the kernel's timeouts use. Any thread.
inline Time monotonicNow() {
    return std::chrono::duration_cast<Time>(std::chrono::steady_clock::now().time_since_epoch());
}

} // namespace glimra::platform
