#pragma once

#include "desktop/x11/window_properties.h"

#include <optional>
#include <vector>

namespace glimra::desktop {

/// A window of the game that can be seen.
struct GameWindow {
    xcb_window_t id = XCB_NONE;
    int width = 0;
    int height = 0;
};

/// A place on the root window, in pixels.
struct Place {
    int x = 0;
    int y = 0;
};

/// Finds the game's window on one connection and follows it: by the same rule by which the application in
/// front is told to be the game. The largest of several windows is taken; of equal ones the active one.
///
/// Windows are searched for when an event has told of a change, and a few times a second at most; without one
/// nothing is sent to the server. To be used with a single connection and not longer than it.
class GameWindowWatch {
public:
    /// Subscribes to the events; `rootEvents` are those that others want of the root window.
    GameWindowWatch(Connection& connection, std::uint32_t rootEvents);

    /// Takes in one event.
    void take(const xcb_generic_event_t& event);
    /// Searches, if there is reason to and it is time.
    void refresh(platform::Time now);

    /// None while there is none that can be seen.
    const std::optional<GameWindow>& window() const { return m_window; }
    /// Where the middle of the window's top edge is; none without a window.
    std::optional<Place> topMiddle();

private:
    void takeChange(const xcb_property_notify_event_t& change);
    void takeSize(const xcb_configure_notify_event_t& change);
    void forget(xcb_window_t window);

    /// What a search has found so far.
    struct Findings {
        /// In rising order.
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
    /// All windows of the game, seen or not.
    std::vector<xcb_window_t> m_games;
    /// Windows that a change of the title could make one of the game.
    std::vector<xcb_window_t> m_titled;
    std::optional<GameWindow> m_window;
    std::optional<Place> m_topMiddle;
    bool m_outdated = true;
    platform::Time m_searchAt{};
};

} // namespace glimra::desktop
