#include "desktop/x11/screen_capture.h"
#include "desktop/x11/xvfb_fixture.h"
#include "screenlink/calibration.h"
#include "simulated/run_loop.h"
#include "simulated/user_defaults.h"
#include "tools/strip/strip_painter.h"

#include <gtest/gtest.h>

namespace glimra {
namespace {

using namespace std::chrono_literals;

struct Heard final : platform::Sounds, platform::ChildProcesses, platform::MessageLog {
    std::string log;
    std::vector<std::string> spoken;
    int beeps = 0;

    void play(std::string_view) override { ++beeps; }
    void start(const std::string&, const std::vector<std::string>& arguments) override {
        spoken.push_back(arguments.at(0));
    }
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
        painter.paint(tools::testPattern());
        return glimra::tests::eventually([&] {
            const auto image = capture.capture({0.0, 0.0, 1.0, 1.0});
            return image && image->view().colorAt(0) == platform::Color{1.0, 0.0, 0.0};
        });
    }

    void calibrate(platform::Duration searchTime) {
        screenlink::Calibration calibration(
            {loop, capture, heard, heard, defaults, heard, messages, settings, geometry}, searchTime);
        messages.confirmCalibrate = true;
        calibration.calibrateScreen();
        calibration.calibrateScreen();
    }

    /// What is read while the painter shows a token's two frames.
    std::optional<screenlink::Token> read(tools::StripPainter& painter, const screenlink::Token& token) {
        screenlink::TokenAssembler assembler;
        const tools::TokenFrames frames = tools::encodeToken(token);
        std::optional<screenlink::Token> seen;
        for (const tools::StripFrame& frame : {frames.announce, frames.confirm}) {
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
    Heard heard;
    events::MessageState messages;
    screenlink::ScanSettings settings{80.0, 2};
    screenlink::SharedStripGeometry geometry{screenlink::stripGeometry(80.0, 2)};
};

TEST_P(CalibrationOnX11, FindsStripsOfManyWidthsAndReadsEverythingAfterwards) {
    const std::vector<int> widths =
        inWindow() ? std::vector{60, 80, 188} : std::vector{60, 67, 75, 80, 96, 110, 127, 150, 170, 188};
    for (const int width : widths) {
        tools::StripPainter painter(server.display(), stripOf(width));
        ASSERT_TRUE(sees(painter));
        heard.log.clear();
        calibrate(screenlink::kSearchTime);
        EXPECT_NE(heard.log.find("Calibration successful!"), std::string::npos) << width;
        EXPECT_NEAR(settings.scanWidth, width, 4.0);
        for (int character = 0; character < 128; ++character) {
            const screenlink::Token plain{std::nullopt, static_cast<char>(character)};
            EXPECT_EQ(read(painter, plain), plain) << width << ": " << character;
            for (const char prefix : screenlink::kPrefixCharacters) {
                const screenlink::Token token{prefix, static_cast<char>(character)};
                if (tools::isEncodable(token)) {
                    EXPECT_EQ(read(painter, token), token) << width << ": " << token.text();
                }
            }
        }
    }
}

TEST_P(CalibrationOnX11, WithoutAStripItFailsAndReadsOnAsBefore) {
    calibrate(3s);
    EXPECT_NE(heard.log.find("Calibration failed."), std::string::npos);
    EXPECT_GE(heard.beeps, 1);
    EXPECT_EQ(heard.spoken.size(), 2U);
    EXPECT_TRUE(messages.confirmCalibrate);
    EXPECT_EQ(settings.scanWidth, 80.0);
    EXPECT_EQ(defaults.get("scanWidth"), platform::StoredValue(0.0));
    tools::StripPainter painter(server.display(), stripOf(80));
    ASSERT_TRUE(sees(painter));
    EXPECT_EQ(read(painter, {std::nullopt, 'C'}), (screenlink::Token{std::nullopt, 'C'}));
}

INSTANTIATE_TEST_SUITE_P(Ways, CalibrationOnX11,
                         ::testing::Values(desktop::CaptureChoice::Screen, desktop::CaptureChoice::Window));

} // namespace
} // namespace glimra
