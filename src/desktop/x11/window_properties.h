#pragma once

#include "desktop/x11/application_identity.h"
#include "desktop/x11/connection.h"

#include <optional>
#include <vector>

namespace glimra::desktop {

/// Atoms of the properties and messages that window managers share (Extended Window Manager Hints).
struct WindowAtoms {
    xcb_atom_t activeWindow = XCB_NONE;
    xcb_atom_t clientList = XCB_NONE;
    xcb_atom_t windowName = XCB_NONE;
    xcb_atom_t processId = XCB_NONE;
};

/// None when the server does not answer.
std::optional<WindowAtoms> internWindowAtoms(Connection& connection);

/// More windows than this are never looked at.
inline constexpr std::uint32_t kWindowLimit = 1024;

/// At most `limit` windows from a property that lists windows; empty when it is absent or of another type.
std::vector<xcb_window_t> windowsProperty(Connection& connection, xcb_window_t window, xcb_atom_t property,
                                          std::uint32_t limit);

/// These two request a window's class and read the reply: facts with the class only, none when there is no
/// such window.
xcb_get_property_cookie_t requestWindowClass(Connection& connection, xcb_window_t window);
std::optional<WindowFacts> windowClassFacts(Connection& connection, xcb_get_property_cookie_t cookie);

/// What a window says about itself, each text cut after 1024 bytes; none when there is no such window.
std::optional<WindowFacts> readWindowFacts(Connection& connection, const WindowAtoms& atoms,
                                           xcb_window_t window);

} // namespace glimra::desktop
