#include "desktop/x11/capture_state.h"

#include <algorithm>
#include <array>

namespace glimra::desktop {

namespace {

/// By choice.
constexpr std::array<std::string_view, 3> kNames{"auto", "screen", "window"};

} // namespace

std::string_view captureChoiceName(CaptureChoice choice) {
    return kNames.at(static_cast<std::size_t>(choice));
}

std::optional<CaptureChoice> captureChoiceNamed(std::string_view name) {
    const auto* const found = std::ranges::find(kNames, name);
    return found == kNames.end() ? std::nullopt
                                 : std::optional(static_cast<CaptureChoice>(found - kNames.begin()));
}

std::string_view captureDescription(CaptureState state) {
    switch (state) {
    case CaptureState::NoServer:
        return "no X display";
    case CaptureState::Screen:
        return "reading the screen";
    case CaptureState::ScreenRefused:
        return "the screen cannot be read";
    case CaptureState::Window:
        return "reading the game's window";
    case CaptureState::NoWindow:
        return "waiting for the game's window";
    }
    return {};
}

std::string_view captureMessage(CaptureState state) {
    switch (state) {
    case CaptureState::NoServer:
        return "Screen capture: there is no X display. Set DISPLAY; in a Wayland session, turn on XWayland "
               "and "
               "run the game in it.";
    case CaptureState::Screen:
        return "Screen capture: the screen is read, at its top edge.";
    case CaptureState::ScreenRefused:
        return "Screen capture: this desktop does not let programs read the screen. Start Glimra with "
               "\"--capture window\".";
    case CaptureState::Window:
    case CaptureState::NoWindow:
        return "Screen capture: the game's own window is read, whenever it is shown.";
    }
    return {};
}

} // namespace glimra::desktop
