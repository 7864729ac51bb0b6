#include "app/window_closer.h"

#include <algorithm>

namespace glimra::app {

namespace {

bool isOpenWindow(const NamedOutlet& outlet) {
    const auto* const window = std::get_if<platform::Window*>(&outlet.control);
    return window != nullptr && (*window)->visible.get();
}

} // namespace

WindowCloser::WindowCloser(Outlets& outlets, platform::Application& application)
    : m_outlets(outlets),
      m_application(application) {
}

void WindowCloser::close(platform::Window& window) {
    if (!window.visible.get())
        return;
    window.visible.set(false);
    if (std::ranges::none_of(namedOutlets(m_outlets), isOpenWindow))
        m_application.terminate();
}

void WindowCloser::windowShouldClose(platform::Window& window) {
    if (&window == &m_outlets.mainWindow)
        for (platform::Window* companion :
             {&m_outlets.helpWindow, &m_outlets.colorProgrammerWindow, &m_outlets.aboutWindow})
            close(*companion);
    close(window);
}

} // namespace glimra::app
