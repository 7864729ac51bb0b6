#pragma once

#include <optional>
#include <string_view>

namespace glimra::desktop {

/// What the user wants captured.
enum class CaptureChoice { Automatic, Screen, Window };

/// "auto", "screen" or "window"; none for any other name.
std::optional<CaptureChoice> captureChoiceNamed(std::string_view name);

/// How a capture gets at the strip, at one moment.
enum class CaptureState {
    /// There is no X server.
    NoServer,
    /// From the screen.
    Screen,
    /// From the screen, as was wanted, but the server does not let it be read.
    ScreenRefused,
    /// From the game's window.
    Window,
    /// From the game's window, which is not there or not shown.
    NoWindow,
};

/// A few words, for a status line.
std::string_view captureDescription(CaptureState state);

/// A sentence or two: what is captured or, where nothing can be, what to do. The same for the states that
/// only differ in whether the window is there.
std::string_view captureMessage(CaptureState state);

} // namespace glimra::desktop
