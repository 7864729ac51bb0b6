#pragma once

#include "desktop/x11/connection.h"

#include <optional>

namespace glimra::desktop {

/// A rectangle on the root window, in pixels. It may reach beyond the root window.
struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// What is known of the displays of one X screen.
struct Displays {
    int activeCount = 0;
    Area main;
    int rootWidth = 0;
    int rootHeight = 0;
};

/// Follows the displays of one connection: asks for them when an event said that they have changed, and never
/// otherwise. To be used with a single connection and not longer than it.
class DisplayWatch {
public:
    /// Subscribes to the events; worth nothing when the connection is silent afterwards.
    explicit DisplayWatch(Connection& connection);

    /// Takes in the events that have arrived; without one there is no request to the server.
    void update();
    const Displays& displays() const { return m_displays; }

private:
    bool isDisplayEvent(const xcb_generic_event_t& event) const;
    std::optional<Displays> query();

    Connection& m_connection;
    bool m_hasRandr = false;
    /// Version 1.5, which has monitors.
    bool m_hasMonitors = false;
    std::uint8_t m_firstRandrEvent = 0;
    bool m_outdated = true;
    Displays m_displays;
};

} // namespace glimra::desktop
