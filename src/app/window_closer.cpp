#include "app/window_closer.h"

#include <algorithm>

namespace glimra::app {

WindowCloser::WindowCloser(Outlets& outlets, platform::Application& application)
    : m_outlets(outlets),
      m_application(application) {
}

void WindowCloser::close(platform::Window& window) {
    if (!window.visible.get())
        return;
    window.visible.set(false);
    const auto isOpenWindow = [this](const NamedOutlet& outlet) {
        const platform::Window* const each = outlet.windowIn(m_outlets);
        return each != nullptr && each->visible.get();
    };
    if (std::ranges::none_of(namedOutlets(), isOpenWindow))
        m_application.terminate();
}

void WindowCloser::windowShouldClose(const WindowName& window) {
    const NamedOutlet* const outlet = findOutlet(window.name);
    platform::Window* const closed = outlet == nullptr ? nullptr : outlet->windowIn(m_outlets);
    if (closed == nullptr)
        return;
    if (closed == &m_outlets.mainWindow)
        for (platform::Window* companion :
             {&m_outlets.helpWindow, &m_outlets.colorProgrammerWindow, &m_outlets.aboutWindow})
            close(*companion);
    close(*closed);
}

} // namespace glimra::app
