#pragma once

#include "platform/run_loop.h"

namespace glimra::platform {

/// The work of a worker thread. The thread calls `pass`, pauses for `pause`, and repeats this while `goesOn`
/// returns true; then it calls `left`. All are called on that thread.
class LoopBody {
public:
    virtual ~LoopBody() = default;

    virtual void pass() = 0;
    /// Time from the end of a pass to the next one; above 0.
    virtual Duration pause() const = 0;
    virtual bool goesOn() const = 0;
    virtual void left() = 0;
};

/// A thread that runs a loop body. The body must outlive it. The destructor waits until `left` has returned.
class WorkerLoop {
public:
    virtual ~WorkerLoop() = default;

    /// Starts the loop: the first pass runs at once. Call once only, on the main thread.
    virtual void start(LoopBody& body) = 0;
};

} // namespace glimra::platform
