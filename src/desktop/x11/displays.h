#pragma once

#include "desktop/x11/connection.h"

#include <optional>
#include <vector>

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
    /// All of them, the main one too; none where the server tells of none.
    std::vector<Area> monitors{};
    int rootWidth = 0;
    int rootHeight = 0;
};

/// Follows the displays of one connection: asks for them when an event said that they have changed, and never
/// otherwise. To be used with a single connection and not longer than it.
class DisplayWatch {
public:
    /// Subscribes to the events; worth nothing when the connection is silent afterwards.
    explicit DisplayWatch(Connection& connection);

    /// What has to stay selected on the root window, whatever else is followed there.
    static constexpr std::uint32_t kRootEvents = XCB_EVENT_MASK_STRUCTURE_NOTIFY;

    /// Takes in the events that have arrived, whatever they tell of, and refreshes.
    void update();
    /// Takes in one event.
    void take(const xcb_generic_event_t& event);
    /// Asks for the displays if an event said so; else there is no request to the server.
    void refresh();
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
