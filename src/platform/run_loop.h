#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace glimra::platform {

/// A point in time, counted from the run loop's own epoch. The real loops use CLOCK_MONOTONIC.
using Time = std::chrono::nanoseconds;
using Duration = std::chrono::nanoseconds;
using TimerId = std::uint64_t;

/// The main thread's loop: clock, timers and job queue. Everything that lights a key runs on it.
///
/// Main thread only, except `post`. Timers and jobs run in the order of their due times; those due at the
/// same time run in the order of their creation.
class RunLoop {
public:
    virtual ~RunLoop() = default;

    virtual Time now() const = 0;
    /// Date and time of a moment, in UTC, as in "2026-11-22 20:47:35 +0000".
    virtual std::string dateAndTime(Time moment) const = 0;

    /// Runs `action` every `period` (above 0), for the first time one period from now. However long an action
    /// takes, the times stay on this grid: an action never runs inside itself, and grid points missed
    /// meanwhile are skipped.
    virtual TimerId repeat(Duration period, std::function<void()> action) = 0;
    /// Runs `action` once, `delay` (0 or more) from now.
    virtual TimerId after(Duration delay, std::function<void()> action) = 0;
    /// Cancels a timer; ignores unknown and expired ones. May be called inside the timer's own action.
    virtual void cancel(TimerId timer) = 0;

    /// `rest(timer, longest)` lets a repeating timer whose action would do nothing skip its grid points until
    /// `rouse`, but for no longer than `longest`. Call it in the timer's own action. A loop whose timers cost
    /// nothing may ignore both.
    virtual void rest(TimerId, Duration) {}
    /// `rouse(timer)`: it is due again from its next grid point on. Ignores unknown timers and those that do
    /// not rest.
    virtual void rouse(TimerId) {}

    /// Queues `job` to run on the main thread, after the jobs already queued. Any thread; never blocks for
    /// long.
    virtual void post(std::function<void()> job) = 0;

    /// Runs the loop until `deadline`, nested inside the caller. Returns false, at once, when the application
    /// has terminated: then the caller must return without doing anything more.
    [[nodiscard]] virtual bool runUntil(Time deadline) = 0;

    /// Marks the application as terminated: from now on `runUntil` returns at once and no action starts.
    virtual void terminate() = 0;
    virtual bool isTerminated() const = 0;
};

} // namespace glimra::platform
