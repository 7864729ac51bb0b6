#pragma once

#include "desktop/x11/capture_state.h"
#include "desktop/x11/connector.h"
#include "desktop/x11/displays.h"
#include "desktop/x11/game_window.h"
#include "desktop/x11/pixel_layout.h"
#include "platform/screen_capture.h"

#include <atomic>
#include <functional>

namespace glimra::desktop {

/// Captures rows of an X screen on a connection of its own. It captures the screen or, where a Wayland
/// desktop does not let programs read the screen, the game's own window.
///
/// Rectangles are relative to the top left corner of what is captured. On the screen that is the main display
/// or, with several displays, the one with the game's window. A window that is partly off the screen can be
/// captured only if the server keeps its pixels.
///
/// A capture costs one request, for the pixels of one row. Displays and windows are queried once, and again
/// only when an event has reported a change. If the server stalls, captures fail, after one short wait, until
/// it answers again. If the server is gone, there are no displays, and it is tried again with growing pauses.
///
/// One thread at a time. A point is a pixel unless `setPixelsPerPoint` says otherwise; captured images have
/// one pixel for each point in any case.
class X11ScreenCapture final : public platform::ScreenCapture {
public:
    /// An empty name means $DISPLAY. `changed` is called on the owner's thread whenever `state` has changed,
    /// also from this constructor. Waits a second or so at most for the server.
    explicit X11ScreenCapture(const std::string& displayName = {},
                              CaptureChoice choice = CaptureChoice::Automatic,
                              std::function<void(CaptureState)> changed = {});

    int activeDisplayCount() override;
    std::optional<platform::Image> capture(const platform::ScreenRect& rect) override;
    double backingScaleFactor() override { return 1.0; }

    /// Any thread.
    CaptureState state() const { return m_state; }
    /// Real pixels for a point, 1 or more; of those of a point the first is taken. 1 at first. Any thread.
    void setPixelsPerPoint(int pixels) { m_pixelsPerPoint = pixels; }
    int pixelsPerPoint() const { return m_pixelsPerPoint; }
    /// Disconnects, for when nothing is to be captured for a while. The next call connects again, without
    /// waiting.
    void rest();
    /// Bytes sent to the server on the present connection, to measure what a capture costs.
    std::uint64_t bytesSent() const;

private:
    /// Where a row is read from. Position 0, 0 is at `origin` in the drawable; positions from `low` to before
    /// `high` can be captured.
    struct Source {
        xcb_drawable_t drawable = XCB_NONE;
        Place origin;
        Place low;
        Place high;
    };

    void useConnection(std::unique_ptr<Connection> connection);
    void chooseWay();
    /// Updates displays and windows; null when the server is gone.
    const Displays* currentDisplays();
    void followWindows();
    void tellState();
    CaptureState currentState() const;
    std::optional<Source> source(const Displays& displays);
    Area displayOfGame(const Displays& displays);
    const std::optional<PixelLayout>& layoutOf(xcb_visualid_t visual);

    Connector m_connector;
    CaptureChoice m_choice;
    /// Whether the display belongs to a Wayland session.
    bool m_isInWayland;
    std::function<void(CaptureState)> m_changed;
    std::unique_ptr<Connection> m_connection;
    bool m_screenIsRefused = false;
    bool m_capturesWindow = false;
    std::optional<DisplayWatch> m_displayWatch;
    std::optional<GameWindowWatch> m_windowWatch;
    /// The visual captured last; `m_layout` is its layout.
    xcb_visualid_t m_visual = XCB_NONE;
    std::optional<PixelLayout> m_layout;
    std::atomic<CaptureState> m_state = CaptureState::NoServer;
    std::atomic<int> m_pixelsPerPoint = 1;
};

/// The part of one dimension of a rectangle that is visible.
struct VisibleSpan {
    /// Relative to the display's edge.
    int first = 0;
    int count = 0;
    /// Pixels of the rectangle before the first visible one.
    int skipped = 0;
};

/// The pixels whose centres lie in the span of `length` from `begin` and that are in `low` to `high` - 1;
/// none when there are no such pixels.
std::optional<VisibleSpan> visibleSpan(double begin, double length, int low, int high);

} // namespace glimra::desktop
