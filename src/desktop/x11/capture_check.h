#pragma once

#include "desktop/x11/capture_state.h"
#include "platform/screen_capture.h"

#include <chrono>
#include <optional>
#include <string>

namespace glimra::desktop {

enum class DisplayServer { None, X11, XWayland };

/// Whether and how the strip can be captured here.
struct CaptureCheck {
    DisplayServer server = DisplayServer::None;
    CaptureState state = CaptureState::NoServer;
    int activeDisplays = 0;
    /// Size of the main display, in pixels.
    int mainWidth = 0;
    int mainHeight = 0;
    /// The median time of several captures; none when there was no image.
    std::optional<std::chrono::nanoseconds> captureTime;
    /// Why there was no image and what to do, in one or two sentences; empty when there was one.
    std::string problem;
};

/// Captures `strip` on a display as the application does. Takes a few seconds at most.
CaptureCheck checkCapture(const std::string& displayName, CaptureChoice choice,
                          const platform::ScreenRect& strip);

} // namespace glimra::desktop
