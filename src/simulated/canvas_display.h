#pragma once

#include "platform/controls.h"
#include "simulated/run_loop.h"

#include <functional>

namespace glimra::simulated {

/// Draws a view when it asks to be redrawn, and when its window appears or comes to the front. Drawing is a
/// job of the run loop: requests made before it runs are merged, and a hidden window is not drawn.
class CanvasDisplay {
public:
    /// Must exist as long as the view and its window can change.
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
