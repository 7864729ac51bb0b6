#pragma once

#include "desktop/x11/window_properties.h"

#include <optional>
#include <vector>

namespace glimra::desktop {

/// A visible window of the game.
struct GameWindow {
    xcb_window_t id = XCB_NONE;
    int width = 0;
    int height = 0;
};

/// A point on the root window, in pixels.
struct Place {
    int x = 0;
    int y = 0;
};

/// Finds the game's window on one connection and follows it. The rule for what is the game is that of
/// `identify`. Of several windows it takes the largest; of equally large ones, the active one.
///
/// It searches only after an event has reported a change, and at most a few times a second; otherwise it
/// sends nothing to the server. Must not outlive the connection.
class GameWindowWatch {
public:
    /// Subscribes to the events. `rootEvents` are events on the root window that other code needs.
    GameWindowWatch(Connection& connection, std::uint32_t rootEvents);

    /// Handles one event.
    void take(const xcb_generic_event_t& event);
    /// Searches when an event has reported a change and the pause since the last search is over.
    void refresh(platform::Time now);

    /// None while no window of the game is visible.
    const std::optional<GameWindow>& window() const { return m_window; }
    /// The middle of the window's top edge; none without a window.
    std::optional<Place> topMiddle();

private:
    void takeChange(const xcb_property_notify_event_t& change);
    void takeSize(const xcb_configure_notify_event_t& change);
    void forget(xcb_window_t window);

    /// The results of a search so far.
    struct Findings {
        /// In ascending order.
        std::vector<xcb_window_t> seen{};
        std::vector<xcb_window_t> games{};
        std::vector<xcb_window_t> titled{};
    };
    void search();
    std::vector<xcb_window_t> firstLevel();
    std::vector<xcb_window_t> examine(const std::vector<xcb_window_t>& windows, Findings& findings);
    bool isGameWindow(xcb_window_t window, const WindowFacts& facts);
    std::optional<GameWindow> choose(const std::vector<xcb_window_t>& windows);

    Connection& m_connection;
    std::optional<WindowAtoms> m_atoms;
    /// All windows of the game, visible or not.
    std::vector<xcb_window_t> m_games;
    /// Windows that might become the game's when their title changes.
    std::vector<xcb_window_t> m_titled;
    std::optional<GameWindow> m_window;
    std::optional<Place> m_topMiddle;
    bool m_outdated = true;
    platform::Time m_searchAt{};
};

} // namespace glimra::desktop
