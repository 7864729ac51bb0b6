#include "desktop/x11/capture_check.h"

#include "desktop/x11/screen_capture.h"

#include <xcb/randr.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace glimra::desktop {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kCaptures = 21;
constexpr std::string_view kXWayland = "XWAYLAND";

bool hasXWaylandOutput(Connection& connection) {
    const auto resources = connection.reply<xcb_randr_get_screen_resources_current_reply_t>(
        xcb_randr_get_screen_resources_current(connection.xcb(), connection.root()));
    if (!resources || resources->num_outputs == 0)
        return false;
    const auto output = connection.reply<xcb_randr_get_output_info_reply_t>(xcb_randr_get_output_info(
        connection.xcb(), *xcb_randr_get_screen_resources_current_outputs(resources.get()),
        resources->config_timestamp));
    if (!output)
        return false;
    const std::string_view name(
        reinterpret_cast<const char*>(xcb_randr_get_output_info_name(output.get())),
        static_cast<std::size_t>(xcb_randr_get_output_info_name_length(output.get())));
    return name.starts_with(kXWayland);
}

DisplayServer serverOf(Connection& connection) {
    // Newer versions of XWayland have an extension of that name, but name their outputs as the desktop does.
    const auto extension = connection.reply<xcb_query_extension_reply_t>(xcb_query_extension(
        connection.xcb(), static_cast<std::uint16_t>(kXWayland.size()), kXWayland.data()));
    const xcb_query_extension_reply_t* randr = xcb_get_extension_data(connection.xcb(), &xcb_randr_id);
    const bool hasOutput = randr != nullptr && randr->present && hasXWaylandOutput(connection);
    return (extension && extension->present) || hasOutput ? DisplayServer::XWayland : DisplayServer::X11;
}

std::optional<std::chrono::nanoseconds> medianCaptureTime(X11ScreenCapture& capture,
                                                          const platform::ScreenRect& strip) {
    std::vector<std::chrono::nanoseconds> times;
    while (times.size() < kCaptures) {
        const auto begin = Clock::now();
        if (!capture.capture(strip))
            return std::nullopt;
        times.push_back(Clock::now() - begin);
    }
    const auto middle = times.begin() + kCaptures / 2;
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

std::string problemOf(const CaptureCheck& check) {
    switch (check.state) {
    case CaptureState::NoServer:
    case CaptureState::ScreenRefused:
        return std::string(captureMessage(check.state));
    case CaptureState::NoWindow:
        return "The game's window is not shown. Start the game, in an X11 window or under XWayland.";
    case CaptureState::Screen:
    case CaptureState::Window:
        break;
    }
    if (check.activeDisplays == 0)
        return "No display is active. Turn one on.";
    return "The strip's place is not on what is captured. Calibrate again.";
}

} // namespace

CaptureCheck checkCapture(const std::string& displayName, CaptureChoice choice,
                          const platform::ScreenRect& strip) {
    CaptureCheck check;
    Connector connector(displayName);
    if (const auto connection = connector.connect(kConnectPatience)) {
        check.server = serverOf(*connection);
        DisplayWatch watch(*connection);
        watch.update();
        check.mainWidth = watch.displays().main.width;
        check.mainHeight = watch.displays().main.height;
    }
    X11ScreenCapture capture(displayName, choice);
    check.activeDisplays = capture.activeDisplayCount();
    check.captureTime = medianCaptureTime(capture, strip);
    check.state = capture.state();
    if (!check.captureTime)
        check.problem = connector.isTrying() ? "The X server does not answer." : problemOf(check);
    return check;
}

} // namespace glimra::desktop
