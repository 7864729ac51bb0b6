#pragma once

#include "desktop/x11/connector.h"
#include "desktop/x11/window_properties.h"
#include "platform/workspace.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace glimra::desktop {

/// Tracks the application in front on an X screen: the one whose window the window manager reports as active.
/// It uses property events on a connection of its own and never polls the server.
///
/// The owner calls `processEvents` whenever `fileDescriptor` becomes readable and at the time `wakeUpAt`;
/// both may change with each call. One thread only.
class X11FrontmostApplication {
public:
    /// An empty name means $DISPLAY. `changed` is called at the end of `processEvents` when `frontmost` has
    /// changed. Waits at most a second for the server.
    explicit X11FrontmostApplication(const std::string& displayName = {}, std::function<void()> changed = {});

    /// None only while there is no server; an application without identifier while no window is
    /// active, be it for the empty desktop or for a window of Wayland's own.
    const std::optional<platform::RunningApplication>& frontmost() const { return m_frontmost; }

    /// -1 while there is no connection.
    int fileDescriptor() const;
    /// None when only events can bring more work.
    std::optional<platform::Time> wakeUpAt() const;
    void processEvents(platform::Time now);

private:
    void useConnection(std::unique_ptr<Connection> connection, platform::Time now);
    void drainEvents();
    void readActiveWindow(platform::Time now);
    void watch(xcb_window_t window);

    Connector m_connector;
    std::function<void()> m_changed;
    std::unique_ptr<Connection> m_connection;
    WindowAtoms m_atoms;
    /// The window whose class and title are watched.
    xcb_window_t m_watched = XCB_NONE;
    std::optional<platform::RunningApplication> m_frontmost;
    /// An event has reported a change that has not been read yet.
    bool m_outdated = false;
    platform::Time m_readAt{};
    std::optional<platform::Time> m_noWindowSince;
};

} // namespace glimra::desktop
