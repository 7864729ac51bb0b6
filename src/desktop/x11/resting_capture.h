#pragma once

#include "desktop/x11/screen_capture.h"
#include "platform/run_loop.h"

#include <string>

namespace glimra::desktop {

/// A capture for occasional use. It disconnects when nothing has been captured for some seconds; otherwise
/// the server would store events for hours for a connection that nobody reads. Main thread.
class RestingCapture final : public platform::ScreenCapture {
public:
    RestingCapture(const std::string& displayName, CaptureChoice choice, platform::RunLoop& runLoop);
    ~RestingCapture() override;

    int activeDisplayCount() override;
    std::optional<platform::Image> capture(const platform::ScreenRect& rect) override;
    void setPixelsPerPoint(int pixels) { m_capture.setPixelsPerPoint(pixels); }
    int pixelsPerPoint() const { return m_capture.pixelsPerPoint(); }
    double backingScaleFactor() override { return m_capture.backingScaleFactor(); }

private:
    X11ScreenCapture& awake();
    void restOrWait();

    platform::RunLoop& m_runLoop;
    X11ScreenCapture m_capture;
    platform::Time m_lastUse{};
    std::optional<platform::TimerId> m_timer;
};

} // namespace glimra::desktop
