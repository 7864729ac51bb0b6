#pragma once

#include "desktop/x11/connector.h"
#include "desktop/x11/window_properties.h"
#include "platform/workspace.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace glimra::desktop {

/// Knows which application is in front on an X screen: the one whose window the window manager calls active.
/// It is told by property events, on a connection of its own; the server is never polled.
///
/// The owner calls `processEvents` whenever `fileDescriptor` becomes readable and when `wakeUpAt` has come,
/// and asks for both again after each call. One thread only.
class X11FrontmostApplication {
public:
    /// An empty name stands for the display in the environment. `changed` is called at the end of
    /// `processEvents`, when `frontmost` has changed. Waits a second at most for the server.
    explicit X11FrontmostApplication(const std::string& displayName = {}, std::function<void()> changed = {});

    /// None while no window is active, and while there is no server.
    const std::optional<platform::RunningApplication>& frontmost() const { return m_frontmost; }

    /// -1 while there is no connection.
    int fileDescriptor() const;
    /// None when there is nothing to be done but for events.
    std::optional<platform::Time> wakeUpAt() const;
    void processEvents(platform::Time now);

private:
    void useConnection(std::unique_ptr<Connection> connection, platform::Time now);
    void drainEvents();
    void readActiveWindow(platform::Time now);
    void watch(xcb_window_t window);
    bool hasNoWindowFor(platform::Duration duration, platform::Time now) const;

    Connector m_connector;
    std::function<void()> m_changed;
    std::unique_ptr<Connection> m_connection;
    WindowAtoms m_atoms;
    /// The window whose class and title are followed.
    xcb_window_t m_watched = XCB_NONE;
    std::optional<platform::RunningApplication> m_frontmost;
    /// An event has told of a change that has not been read yet.
    bool m_outdated = false;
    platform::Time m_readAt{};
    std::optional<platform::Time> m_noWindowSince;
};

} // namespace glimra::desktop
