#pragma once

#include "app/action_argument.h"
#include "app/outlets.h"
#include "platform/application.h"

namespace glimra::app {

/// Closes windows. Closing is more than hiding: when it leaves no window open, the application ends.
class WindowCloser {
public:
    WindowCloser(Outlets& outlets, platform::Application& application);

    /// Closes a window that is open; one that is not stays as it is.
    void close(platform::Window& window);
    /// The close box of a window was clicked. With the main window go its companions. Nothing for a name that
    /// is no window's.
    void windowShouldClose(const WindowName& window);

private:
    Outlets& m_outlets;
    platform::Application& m_application;
};

} // namespace glimra::app
