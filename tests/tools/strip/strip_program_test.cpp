#include "desktop/x11/screen_capture.h"
#include "screenlink/strip_decoder.h"
#include "support/shell.h"
#include "support/x_server.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <future>
#include <sstream>

namespace glimra::tools {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using tests::ChildProcess;
using tests::eventually;
using tests::XvfbServer;

/// Runs the program, without a display unless the arguments name one, with both outputs in one.
tests::Outcome run(const std::string& arguments, const std::string& before = "") {
    return tests::runShell(before + STRIP_PROGRAM " " + arguments + " 2>&1");
}

TEST(StripProgram, BadArgumentsEndWithUsageAndTwo) {
    std::istringstream all(R"x(;--bogus send C;--left;--left -1 send C;--left 99999999999999999999 send C;
--width 10 send C;--hold 0 send C;--hold '' demo;send --;send C --hold 5;send CC;- x)x");
    for (std::string arguments; std::getline(all, arguments, ';');) {
        std::erase(arguments, '\n');
        const auto result = run(arguments);
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_THAT(result.output, HasSubstr("\nUsage: glimra-strip")) << arguments;
        EXPECT_THAT(result.output, StartsWith("glimra-strip: ")) << arguments;
    }
}

TEST(StripProgram, CommandsComeFromStandardInput) {
    XvfbServer server;
    const std::string arguments = "--display " + server.display() + " -";
    const auto runWith = [&](const std::string& input) {
        return run("--display " + server.display() + " -", input + " | ");
    };
    const auto good = runWith("printf 'stage a\\n\\n# note\\nwait 1\\noff\\nstage b'");
    EXPECT_EQ(good.output, "stage a\nstage b\n");
    EXPECT_EQ(good.status, 0);
    const auto bad = runWith("printf 'stage a\\n\\nsend \\0\\377\\nstage b\\n'");
    EXPECT_EQ(bad.status, 2);
    EXPECT_THAT(bad.output, StartsWith("stage a\nglimra-strip: line 3: "));
    EXPECT_THAT(bad.output, testing::Not(HasSubstr("stage b")));
}

/// What the application's reader would see at the factory settings.
std::optional<screenlink::Cells> cellsOn(desktop::X11ScreenCapture& screen) {
    const auto image = screen.capture({2, 0, 80, 1});
    return image ? screenlink::sampleCells(image->view(), screenlink::updatePixelOffsets(80)) : std::nullopt;
}

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

TEST(StripProgram, TheReaderSeesTheTokensWhenTheProgramSaysSo) {
    XvfbServer server;
    desktop::X11ScreenCapture screen(server.display());
    const double begin = now();
    auto program = std::async(
        std::launch::async, run,
        "--hold 200 --timestamps --display " + server.display() + " send C C '`A' '[]' '\\x22' '}\\x7f'", "");
    screenlink::TokenAssembler assembler;
    std::vector<std::string> seen;
    EXPECT_TRUE(eventually([&] {
        const auto cells = cellsOn(screen);
        const auto frame = cells ? screenlink::decodeFrame(*cells) : std::nullopt;
        if (const auto token = frame ? assembler.accept(*frame) : std::nullopt)
            seen.push_back(token->text());
        return seen.size() == 6;
    }));
    EXPECT_THAT(seen, ElementsAre("C", "C", "`A", "[]", "\"", "}\x7f"));

    const auto [status, output] = program.get();
    EXPECT_EQ(status, 0);
    std::istringstream lines(output);
    std::vector<std::string> told;
    double last = begin;
    for (std::string line; std::getline(lines, line);) {
        const auto said = nlohmann::json::parse(line);
        told.push_back(said.at("token"));
        const double time = said.at("t");
        EXPECT_GE(time - last, 0.2 * (told.size() == 1 ? 1 : 2));
        last = time;
    }
    EXPECT_EQ(told, seen);
    EXPECT_LE(last, now());
}

TEST(StripProgram, TheTestPatternStandsUntilStopped) {
    XvfbServer server;
    desktop::X11ScreenCapture screen(server.display());
    for (const int signal : {SIGINT, SIGTERM}) {
        ChildProcess program(STRIP_PROGRAM, {"glimra-strip", "calibrate"}, server.display());
        EXPECT_TRUE(eventually([&] {
            const auto cells = cellsOn(screen);
            return cells && (*cells)[2].colorCode() == 6;
        }));
        // Where a calibration looks for red.
        const auto corner = screen.capture({0, 0, 1, 1});
        EXPECT_EQ(corner->view().colorAt(0), (platform::Color{1.0, 0.0, 0.0}));
        program.signal(signal);
        EXPECT_EQ(program.wait(), 0);
        EXPECT_TRUE(eventually([&] { return cellsOn(screen) == screenlink::Cells{}; }));
    }
}

} // namespace
} // namespace glimra::tools
