#pragma once

#include "desktop/x11/connection.h"

#include <optional>
#include <vector>

namespace glimra::desktop {

/// A rectangle on the root window, in pixels. It may extend beyond the root window.
struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// The displays of one X screen.
struct Displays {
    int activeCount = 0;
    Area main;
    /// All monitors, including the main one; empty when the server reports none.
    std::vector<Area> monitors{};
    int rootWidth = 0;
    int rootHeight = 0;
};

/// Follows the displays of one connection. Queries them only when an event has reported a change. Must not
/// outlive the connection.
class DisplayWatch {
public:
    /// Subscribes to the events. If the connection is silent afterwards, the object must not be used.
    explicit DisplayWatch(Connection& connection);

    /// Events that must stay selected on the root window, whatever else selects events there.
    static constexpr std::uint32_t kRootEvents = XCB_EVENT_MASK_STRUCTURE_NOTIFY;

    /// Handles all events that have arrived, then calls `refresh`.
    void update();
    /// Handles one event.
    void take(const xcb_generic_event_t& event);
    /// Queries the displays if an event has reported a change; otherwise sends nothing.
    void refresh();
    const Displays& displays() const { return m_displays; }

private:
    bool isDisplayEvent(const xcb_generic_event_t& event) const;
    std::optional<Displays> query();

    Connection& m_connection;
    bool m_hasRandr = false;
    /// RandR 1.5 or later, which has monitors.
    bool m_hasMonitors = false;
    std::uint8_t m_firstRandrEvent = 0;
    bool m_outdated = true;
    Displays m_displays;
};

} // namespace glimra::desktop
