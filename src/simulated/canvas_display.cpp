#include "simulated/canvas_display.h"

#include <utility>

namespace glimra::simulated {

CanvasDisplay::CanvasDisplay(SimulatedRunLoop& runLoop, platform::CanvasView& view, platform::Window& window,
                             std::function<void()> draw)
    : m_runLoop(runLoop),
      m_window(window),
      m_draw(std::move(draw)) {
    view.displayNeeded.observe([this] { ask(); });
    window.visible.changed.observe([this](bool) { ask(); });
    window.broughtToFront.observe([this] { ask(); });
}

void CanvasDisplay::ask() {
    if (m_isAsked || !m_window.visible.get())
        return;
    m_isAsked = true;
    m_runLoop.post([this] {
        m_isAsked = false;
        if (m_window.visible.get())
            m_draw();
    });
}

} // namespace glimra::simulated
