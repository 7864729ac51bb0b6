#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace glimra::platform {

/// A moment, counted from the run loop's own epoch; the real loops count as CLOCK_MONOTONIC does.
using Time = std::chrono::nanoseconds;
using Duration = std::chrono::nanoseconds;
using TimerId = std::uint64_t;

/// The main thread's loop: clock, timers and the main queue. Everything that lights a key runs on it.
///
/// Main thread only, but for `post`. What falls due is served in order of time, and among equals in the
/// order of creation.
class RunLoop {
public:
    virtual ~RunLoop() = default;

    virtual Time now() const = 0;
    /// Date and time of a moment in UTC, as "2026-11-22 20:47:35 +0000".
    virtual std::string dateAndTime(Time moment) const = 0;

    /// Runs `action` every `period` (above 0), first one period from now. The grid is kept whatever an action
    /// takes: it never runs inside itself, and grid points that passed meanwhile are skipped.
    virtual TimerId repeat(Duration period, std::function<void()> action) = 0;
    /// Runs `action` once, `delay` (0 or more) from now.
    virtual TimerId after(Duration delay, std::function<void()> action) = 0;
    /// Forgets a timer; unknown and expired ones are ignored. Allowed inside the timer's own action.
    virtual void cancel(TimerId timer) = 0;

    /// Runs `job` on the main thread, after what is already waiting there. Any thread; never blocks for long.
    virtual void post(std::function<void()> job) = 0;

    /// Serves the loop until `deadline`, nested inside whatever called it. Returns false, at once, when the
    /// application has terminated: then the caller must unwind without doing anything more.
    [[nodiscard]] virtual bool runUntil(Time deadline) = 0;

    /// The application has ended: `runUntil` returns at once from now on and no action starts any more.
    virtual void terminate() = 0;
    virtual bool isTerminated() const = 0;
};

} // namespace glimra::platform
