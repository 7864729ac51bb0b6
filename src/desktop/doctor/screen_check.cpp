#include "desktop/doctor/checks.h"

#include "desktop/x11/capture_check.h"
#include "desktop/x11/pixels_per_point.h"
#include "desktop/x11/screen_capture.h"
#include "platform/silent_log.h"
#include "screenlink/scan_settings.h"
#include "screenlink/strip_decoder.h"

#include <cmath>
#include <thread>

namespace glimra::desktop::doctor {

namespace {

constexpr int kLooks = 10;
constexpr auto kPause = std::chrono::milliseconds(100);

std::string_view nameOf(DisplayServer server) {
    switch (server) {
    case DisplayServer::None:
        return "none";
    case DisplayServer::X11:
        return "X11";
    case DisplayServer::XWayland:
        return "XWayland";
    }
    return {};
}

Finding captureFinding(const CaptureCheck& check) {
    Finding found{.check = "capture", .text = {}};
    found.details["server"] = nameOf(check.server);
    if (!check.captureTime) {
        // A game that does not run yet is not a fault of the machine.
        found.health = check.state == CaptureState::NoWindow ? Health::Limited : Health::Bad;
        found.text = "The strip can't be captured: " + std::string(captureDescription(check.state)) + ".";
        found.remedy = check.problem;
        return found;
    }
    const double microseconds = static_cast<double>(check.captureTime->count()) / 1000.0;
    found.text = "Display server " + std::string(nameOf(check.server)) + ": " +
                 std::string(captureDescription(check.state)) + "; one capture takes " +
                 std::to_string(std::lround(microseconds)) + " microseconds.";
    found.details["captureMicroseconds"] = microseconds;
    return found;
}

Finding displayFinding(const CaptureCheck& check) {
    Finding found{.check = "display", .text = {}};
    found.details["active"] = check.activeDisplays;
    if (check.activeDisplays == 0) {
        found.health = Health::Bad;
        found.text = "No display is active.";
        found.remedy = "Turn a display on.";
        return found;
    }
    found.text = "The main display has " + std::to_string(check.mainWidth) + " x " +
                 std::to_string(check.mainHeight) + " pixels.";
    found.details["width"] = check.mainWidth;
    found.details["height"] = check.mainHeight;
    return found;
}

bool showsStrip(const Subject& subject, const screenlink::StripGeometry& geometry) {
    platform::SilentLog log;
    X11ScreenCapture capture(subject.captureDisplay, subject.capture, [](CaptureState) {});
    capture.setPixelsPerPoint(storedPixelsPerPoint({subject.settings.values(), log}));
    for (int look = 0; look < kLooks; ++look) {
        if (look > 0)
            std::this_thread::sleep_for(kPause);
        const std::optional<platform::Image> image = capture.capture(geometry.myScanRect);
        const auto cells =
            image ? screenlink::sampleCells(image->view(), geometry.pixelOffsets) : std::nullopt;
        if (cells && screenlink::decodeFrame(*cells))
            return true;
    }
    return false;
}

} // namespace

Findings checkScreen(const Subject& subject) {
    platform::SilentLog log;
    screenlink::ScanSettings scan;
    const bool isFactory = screenlink::loadScanSettings(scan, {subject.settings.values(), log});
    const screenlink::StripGeometry geometry = screenlink::stripGeometry(scan.scanWidth, scan.scanOffset);
    const CaptureCheck check = checkCapture(subject.captureDisplay, subject.capture, geometry.myScanRect);
    Findings findings{captureFinding(check)};
    if (check.server == DisplayServer::None)
        return findings;
    findings.push_back(displayFinding(check));
    if (!check.captureTime)
        return findings;

    findings.push_back(stripFinding(showsStrip(subject, geometry), !isFactory));
    return findings;
}

Finding stripFinding(bool isSeen, bool isCalibrated) {
    Finding strip{.check = "strip", .text = "The strip shows now."};
    strip.details["seen"] = isSeen;
    strip.details["calibrated"] = isCalibrated;
    if (!isSeen) {
        strip.health = Health::Limited;
        strip.text = "The strip does not show now. The add-on paints it only while it has something to say.";
        strip.remedy = isCalibrated
                           ? "If nothing lights up in the game, calibrate Glimra once more."
                           : "Install the add-on, start the game, and calibrate Glimra to the screen.";
    }
    return strip;
}

} // namespace glimra::desktop::doctor
