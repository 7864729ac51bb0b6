#include "app/app_delegate.h"
#include "desktop/x11/screen_capture.h"
#include "screenlink/strip_decoder.h"
#include "simulated/simulated_platform.h"
#include "support/fake_driver.h"
#include "support/x_server.h"
#include "tools/strip/strip_painter.h"

#include <gtest/gtest.h>

namespace glimra {
namespace {

/// Calibration on a real screen, or in a window on it; the rest of the machine is simulated.
class CalibrationOnX11 : public ::testing::TestWithParam<desktop::CaptureChoice> {
protected:
    /// Windows are searched for a few times a second only.
    bool sees(tools::StripPainter& painter) {
        painter.paint(screenlink::testPattern());
        return tests::eventually([&] {
            const auto image = capture.capture({0.0, 0.0, 1.0, 1.0});
            return image && image->view().colorAt(0) == platform::Color{1.0, 0.0, 0.0};
        });
    }
    /// What is read while the painter shows a token's two frames.
    std::optional<screenlink::Token> read(tools::StripPainter& painter, const screenlink::Token& token) {
        const screenlink::StripGeometry geometry = delegate.state().stripGeometry.copy();
        const screenlink::TokenFrames frames = screenlink::encodeToken(token);
        screenlink::TokenAssembler assembler;
        std::optional<screenlink::Token> seen;
        for (const screenlink::StripFrame& frame : {frames.announce, frames.confirm}) {
            painter.paint(frame);
            const auto image = capture.capture(geometry.myScanRect).value();
            const auto cells = screenlink::sampleCells(image.view(), geometry.pixelOffsets).value();
            seen = assembler.accept(screenlink::decodeFrame(cells).value());
        }
        return seen;
    }

    const std::string window = GetParam() == desktop::CaptureChoice::Window ? "wow.exe" : "";
    tests::XvfbServer server{"3840x2160x24"};
    desktop::X11ScreenCapture capture{server.display(), GetParam()};
    simulated::SimulatedPlatform machine{1};
    tests::FakeDriver keyboard;
    platform::Platform platform = machine.platform(keyboard, {});
    app::AppDelegate delegate{(platform.mainCapture = capture, platform)};
};

TEST_P(CalibrationOnX11, FindsTheStripAndReadsItAfterwards) {
    for (const auto& [pixelsPerPoint, width] :
         {std::pair{1, 60}, {1, 80}, {1, 188}, {2, 80}, {2, 189}, {2, 240}, {2, 320}, {2, 376}}) {
        capture.setPixelsPerPoint(pixelsPerPoint);
        tools::StripPainter painter(server.display(), {0, width, window});
        ASSERT_TRUE(sees(painter));
        // The first time, it asks whether it is meant.
        delegate.operations().calibration.calibrateScreen();
        delegate.operations().calibration.calibrateScreen();
        EXPECT_NEAR(delegate.state().scan.scanWidth * pixelsPerPoint, width, 4.0 * pixelsPerPoint)
            << delegate.outlets().myTextScroll.text;
        for (const screenlink::Token& token : {screenlink::Token{{}, 'C'}, {'`', 'U'}, {'}', '*'}})
            EXPECT_EQ(read(painter, token), token) << width << ": " << token.text();
    }
}

TEST_P(CalibrationOnX11, TellsThatAStripIsTooWide) {
    tools::StripPainter painter(server.display(), {0, 240, window});
    ASSERT_TRUE(sees(painter));
    auto& calibration = delegate.operations().calibration;
    calibration.calibrateScreen();
    calibration.calibrateScreen();
    EXPECT_EQ(calibration.failure.get(), screenlink::SearchFailure::TooWide);
}

INSTANTIATE_TEST_SUITE_P(Ways, CalibrationOnX11,
                         ::testing::Values(desktop::CaptureChoice::Screen, desktop::CaptureChoice::Window));

} // namespace
} // namespace glimra
