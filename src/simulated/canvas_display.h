#pragma once

#include "platform/controls.h"
#include "simulated/run_loop.h"

#include <functional>

namespace glimra::simulated {

/// Has a view drawn when it wants to be, as a job of the run loop: once however often it was asked for, and
/// only while its window is shown. A window that comes to the front has it drawn anew.
class CanvasDisplay {
public:
    /// Must live as long as the view and its window change.
    CanvasDisplay(SimulatedRunLoop& runLoop, platform::CanvasView& view, platform::Window& window,
                  std::function<void()> draw);

    CanvasDisplay(const CanvasDisplay&) = delete;
    CanvasDisplay& operator=(const CanvasDisplay&) = delete;

private:
    void ask();

    SimulatedRunLoop& m_runLoop;
    platform::Window& m_window;
    std::function<void()> m_draw;
    bool m_isAsked = false;
};

} // namespace glimra::simulated
