#pragma once

#include <optional>
#include <string_view>

namespace glimra::desktop {

/// What the user wants captured.
enum class CaptureChoice { Automatic, Screen, Window };

/// "auto", "screen" or "window".
std::string_view captureChoiceName(CaptureChoice choice);
/// The choice of that name; none for any other name.
std::optional<CaptureChoice> captureChoiceNamed(std::string_view name);

/// How a capture gets the strip at present.
enum class CaptureState {
    /// There is no X server.
    NoServer,
    /// From the screen.
    Screen,
    /// From the screen, as requested, but the server does not allow reading it.
    ScreenRefused,
    /// From the game's window.
    Window,
    /// From the game's window, which does not exist or is not visible.
    NoWindow,
};

/// A short description for a status line.
std::string_view captureDescription(CaptureState state);

/// One or two sentences: what is captured or, when nothing can be, what to do. `Window` and `NoWindow` have
/// the same message.
std::string_view captureMessage(CaptureState state);

} // namespace glimra::desktop
