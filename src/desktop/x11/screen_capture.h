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

/// Captures rows of an X screen, on a connection of its own: of the screen or, where a Wayland desktop keeps
/// the screen to itself, of the game's own window.
///
/// Rectangles count from the top left corner of what is captured. Of the screen that is the main display or,
/// where there are several, the one that the game's window is on; a window that is partly beyond the screen
/// can only be captured where the server keeps its pixels.
///
/// A capture costs one request, for the pixels of one row; displays and windows are asked for once and then
/// only when an event has told of a change. A server that stands still makes captures fail, after one short
/// wait, until it answers again. A server that has gone has no displays; it is looked for again, with growing
/// pauses.
///
/// One thread at a time. A point is a pixel.
class X11ScreenCapture final : public platform::ScreenCapture {
public:
    /// An empty name stands for the display in the environment. `changed` is called on the owner's thread
    /// whenever `state` has changed, also from here. Waits a second or so at most for the server.
    explicit X11ScreenCapture(const std::string& displayName = {},
                              CaptureChoice choice = CaptureChoice::Automatic,
                              std::function<void(CaptureState)> changed = {});

    int activeDisplayCount() override;
    std::optional<platform::Image> capture(const platform::ScreenRect& rect) override;
    double backingScaleFactor() override { return 1.0; }

    /// Any thread.
    CaptureState state() const { return m_state; }
    /// Hangs up, since nothing is to be captured for a while; the next call connects again, without waiting.
    void rest();
    /// Bytes sent to the server since it was connected to, to show what a capture costs it.
    std::uint64_t bytesSent() const;

private:
    /// Where a row is taken from: the pixels from (left, top) on of a drawable count as 0, 0 and may be
    /// captured from `low` on and below `high`.
    struct Source {
        xcb_drawable_t drawable = XCB_NONE;
        Place origin;
        Place low;
        Place high;
    };

    void useConnection(std::unique_ptr<Connection> connection);
    void chooseWay();
    /// Follows displays and windows; null when the server has gone.
    const Displays* currentDisplays();
    void followWindows();
    void tellState();
    CaptureState currentState() const;
    std::optional<Source> source(const Displays& displays);
    Area displayOfGame(const Displays& displays);
    const std::optional<PixelLayout>& layoutOf(xcb_visualid_t visual);

    Connector m_connector;
    CaptureChoice m_choice;
    /// The session of the display is a Wayland one.
    bool m_isInWayland;
    std::function<void(CaptureState)> m_changed;
    std::unique_ptr<Connection> m_connection;
    bool m_screenIsRefused = false;
    bool m_capturesWindow = false;
    std::optional<DisplayWatch> m_displayWatch;
    std::optional<GameWindowWatch> m_windowWatch;
    /// Of the visual that was captured last.
    xcb_visualid_t m_visual = XCB_NONE;
    std::optional<PixelLayout> m_layout;
    std::atomic<CaptureState> m_state = CaptureState::NoServer;
};

/// What of one dimension of a rectangle lies on the screen.
struct VisibleSpan {
    /// Counted from the display's edge.
    int first = 0;
    int count = 0;
    /// Pixels of the rectangle that lie before the first visible one.
    int skipped = 0;
};

/// The pixels whose centres lie in the span of `length` from `begin` on and at `low` to `high` - 1; none when
/// there is not one.
std::optional<VisibleSpan> visibleSpan(double begin, double length, int low, int high);

} // namespace glimra::desktop
