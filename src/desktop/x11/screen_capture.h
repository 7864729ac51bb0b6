#pragma once

#include "desktop/x11/connector.h"
#include "desktop/x11/displays.h"
#include "desktop/x11/pixel_layout.h"
#include "platform/screen_capture.h"

namespace glimra::desktop {

/// Captures the root window of an X screen, on a connection of its own.
///
/// A capture costs one request, for the pixels of one row; the displays are asked for once and then only when
/// an event has told of a change. A server that stands still makes captures fail, after one short wait, until
/// it answers again. A server that has gone has no displays; it is looked for again, with growing pauses.
///
/// One thread at a time. A point is a pixel.
class X11ScreenCapture final : public platform::ScreenCapture {
public:
    /// An empty name stands for the display in the environment. Waits a second at most for the server.
    explicit X11ScreenCapture(const std::string& displayName = {});

    int activeDisplayCount() override;
    std::optional<platform::Image> capture(const platform::ScreenRect& rect) override;
    double backingScaleFactor() override { return 1.0; }

    /// Bytes sent to the server since it was connected to, to show what a capture costs it.
    std::uint64_t bytesSent() const;

private:
    void useConnection(std::unique_ptr<Connection> connection);
    /// Follows the displays; null when the server has gone.
    const Displays* currentDisplays();

    Connector m_connector;
    std::unique_ptr<Connection> m_connection;
    std::optional<DisplayWatch> m_displayWatch;
    std::optional<PixelLayout> m_layout;
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
