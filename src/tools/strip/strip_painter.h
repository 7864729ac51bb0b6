#pragma once

#include "desktop/x11/connection.h"
#include "desktop/x11/displays.h"
#include "platform/screen_capture.h"
#include "screenlink/strip_code.h"

#include <memory>
#include <stdexcept>
#include <string>

namespace glimra::tools {

/// Where the strip lies on the main display, in pixels from its left edge. Cell i covers the pixels whose
/// centre c has floor(c x 11 / width) = i.
struct StripPlace {
    int left = 0;
    int width = 80;
    /// Class of a window of its own, as the game has one: then the strip lies at that window's top edge.
    /// Empty for none.
    std::string windowClass{};
};

/// The X server cannot be reached, is gone, or does not take what is asked; what() says it in a sentence.
class DisplayError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Shows a strip at the top edge of the main display, in a window above all others, or in an ordinary window.
/// The strip is dark at first and disappears with the painter. Every function may throw DisplayError.
class StripPainter {
public:
    /// `display` as DISPLAY names it; empty is the one that DISPLAY names.
    StripPainter(const std::string& display, StripPlace place);

    /// Shows the frame, all cells at once; when it returns, the server has painted it.
    void paint(const screenlink::StripFrame& frame);

    /// Becomes readable when the server has something to say, also when it goes.
    int fileDescriptor() const;
    /// Takes what the server has said.
    void serveEvents();

private:
    xcb_window_t createGameWindow(const desktop::Area& display);
    void createWindow();
    void draw(const screenlink::StripFrame& frame, xcb_pixmap_t pixmap);
    /// Waits until the server has done all that it was sent.
    void finish();

    std::unique_ptr<desktop::Connection> m_connection;
    StripPlace m_place;
    platform::PixelFormat m_format;
    xcb_window_t m_window = XCB_NONE;
    xcb_gcontext_t m_graphics = XCB_NONE;
};

} // namespace glimra::tools
