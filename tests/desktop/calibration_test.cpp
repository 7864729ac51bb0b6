#include "desktop/x11/screen_capture.h"
#include "screenlink/calibration.h"
#include "screenlink/strip_decoder.h"
#include "simulated/run_loop.h"
#include "simulated/services.h"
#include "simulated/user_defaults.h"
#include "support/x_server.h"
#include "tools/strip/strip_painter.h"

#include <gtest/gtest.h>

namespace glimra {
namespace {

struct Heard final : platform::MessageLog {
    std::string log;

    bool debugMode() const override { return false; }
    void appendLog(std::string_view text) override { log += text; }
    void appendDebugLog(std::string_view) override {}
    void insertText(std::string_view text) override { log += text; }
};

/// Calibration on a real screen, or in a window on it; only the time is simulated.
class CalibrationOnX11 : public ::testing::TestWithParam<desktop::CaptureChoice> {
protected:
    bool inWindow() const { return GetParam() == desktop::CaptureChoice::Window; }
    tools::StripPlace stripOf(int width) const { return {0, width, inWindow() ? "wow.exe" : ""}; }
    /// Windows are searched for a few times a second only.
    bool sees(tools::StripPainter& painter) {
        painter.paint(screenlink::testPattern());
        return glimra::tests::eventually([&] {
            const auto image = capture.capture({0.0, 0.0, 1.0, 1.0});
            return image && image->view().colorAt(0) == platform::Color{1.0, 0.0, 0.0};
        });
    }

    /// What is read while the painter shows a token's two frames.
    std::optional<screenlink::Token> read(tools::StripPainter& painter, const screenlink::Token& token) {
        screenlink::TokenAssembler assembler;
        const screenlink::TokenFrames frames = screenlink::encodeToken(token);
        std::optional<screenlink::Token> seen;
        for (const screenlink::StripFrame& frame : {frames.announce, frames.confirm}) {
            painter.paint(frame);
            const screenlink::StripGeometry now = geometry.copy();
            const auto image = capture.capture(now.myScanRect);
            const auto cells =
                image ? screenlink::sampleCells(image->view(), now.pixelOffsets) : std::nullopt;
            const auto decoded = cells ? screenlink::decodeFrame(*cells) : std::nullopt;
            seen = decoded ? assembler.accept(*decoded) : std::nullopt;
        }
        return seen;
    }

    glimra::tests::XvfbServer server;
    desktop::X11ScreenCapture capture{server.display(), GetParam()};
    simulated::SimulatedRunLoop loop;
    simulated::InMemoryDefaults defaults;
    simulated::NoSounds sounds;
    simulated::NoChildProcesses voice;
    Heard heard;
    events::MessageState messages;
    screenlink::ScanSettings settings{80.0, 2};
    screenlink::SharedStripGeometry geometry{screenlink::stripGeometry(80.0, 2)};
};

TEST_P(CalibrationOnX11, FindsTheStripAndReadsItAfterwards) {
    for (const int width : {60, 80, 188}) {
        tools::StripPainter painter(server.display(), stripOf(width));
        ASSERT_TRUE(sees(painter));
        heard.log.clear();
        screenlink::Calibration calibration(
            {loop, capture, sounds, voice, defaults, heard, messages, settings, geometry},
            screenlink::kSearchTime);
        messages.confirmCalibrate = false;
        calibration.calibrateScreen();
        EXPECT_NE(heard.log.find("Calibration successful!"), std::string::npos) << width;
        EXPECT_NEAR(settings.scanWidth, width, 4.0);
        for (const screenlink::Token& token : {screenlink::Token{{}, 'C'}, {'`', 'U'}, {'}', '*'}})
            EXPECT_EQ(read(painter, token), token) << width << ": " << token.text();
    }
}

INSTANTIATE_TEST_SUITE_P(Ways, CalibrationOnX11,
                         ::testing::Values(desktop::CaptureChoice::Screen, desktop::CaptureChoice::Window));

} // namespace
} // namespace glimra
