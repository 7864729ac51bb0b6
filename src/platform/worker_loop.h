#pragma once

#include "platform/run_loop.h"

namespace glimra::platform {

/// What a thread of its own does again and again: pass, pause, and on while `goesOn`; at the end `left`.
/// All three are called on that thread.
class LoopBody {
public:
    virtual ~LoopBody() = default;

    virtual void pass() = 0;
    virtual bool goesOn() const = 0;
    virtual void left() = 0;
};

/// A thread that runs a loop body. The body must outlive it; destroying it waits until the body has left.
class WorkerLoop {
public:
    virtual ~WorkerLoop() = default;

    /// Starts the loop: the first pass at once, `pause` after each. Once only, main thread.
    virtual void start(LoopBody& body, Duration pause) = 0;
};

} // namespace glimra::platform
