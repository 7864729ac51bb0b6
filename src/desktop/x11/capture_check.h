#pragma once

#include "desktop/x11/capture_state.h"
#include "platform/screen_capture.h"

#include <chrono>
#include <optional>
#include <string>

namespace glimra::desktop {

enum class DisplayServer { None, X11, XWayland };

/// Whether the strip can be captured here, and how.
struct CaptureCheck {
    DisplayServer server = DisplayServer::None;
    CaptureState state = CaptureState::NoServer;
    int activeDisplays = 0;
    /// Of the main display, in pixels.
    int mainWidth = 0;
    int mainHeight = 0;
    /// What one capture took, the median of several; none when there was no image.
    std::optional<std::chrono::nanoseconds> captureTime;
    /// Why there was no image, and what to do: one or two sentences. Empty when there was one.
    std::string problem;
};

/// Tries to capture `strip` on a display as the application does. Waits a few seconds at most.
CaptureCheck checkCapture(const std::string& displayName, CaptureChoice choice,
                          const platform::ScreenRect& strip);

} // namespace glimra::desktop
