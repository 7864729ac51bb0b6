#include "app/app_delegate.h"
#include "fuzz/fuzz_target.h"
#include "keyboards/virtual_keyboard.h"
#include "screenlink/strip_code.h"
#include "simulated/simulated_platform.h"

namespace {

using namespace glimra;
using glimra::tests::must;
using namespace std::chrono_literals;

constexpr std::size_t kRowBytes = 3 * simulated::SimulatedScreen::kStripCells;
constexpr std::size_t kMostRows = 40;

void add(std::vector<std::uint8_t>& bytes, const screenlink::StripFrame& frame) {
    for (const std::uint32_t color : frame)
        for (const int shift : {16, 8, 0})
            bytes.push_back(static_cast<std::uint8_t>(color >> shift));
}

} // namespace

/// Rows of any pixels, one after another, through the whole application: with the first bit of the first
/// byte, it responds fast. It lives, and quits when it is asked to.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    simulated::SimulatedPlatform machine{1};
    keyboards::VirtualKeyboard keyboard([&] { return machine.runLoop.now(); });
    machine.userDefaults.set("fastResponse", size > 0 && (data[0] & 1U) != 0);
    app::AppDelegate application(machine.platform(keyboard, {}));
    application.applicationDidFinishLaunching();
    for (std::size_t row = 0; row < kMostRows && (row + 1) * kRowBytes <= size; ++row) {
        simulated::SimulatedScreen::StripCells cells{};
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const std::uint8_t* const color = data + row * kRowBytes + 3 * i;
            cells[i] = std::uint32_t{color[0]} << 16U | std::uint32_t{color[1]} << 8U | color[2];
        }
        machine.screen.paintStrip(cells);
        must(machine.runLoop.runUntil(machine.runLoop.now() + 60ms), "it goes on");
    }
    // Most animations, and whatever had to wait for it.
    must(machine.runLoop.runUntil(machine.runLoop.now() + 5s), "it goes on");
    must(application.applicationShouldTerminate() == platform::TerminateReply::Later, "it quits");
    must(!machine.runLoop.runUntil(machine.runLoop.now() + 1s), "it has quit");
    application.applicationWillTerminate();
    return 0;
}

std::vector<glimra::tests::FuzzSeed> glimra::tests::fuzzSeeds() {
    std::vector<FuzzSeed> seeds;
    for (const char* const text : {"CxyzO", "DWVU", "IiEe", "jKkKl", "rHTaAJ", "R-1p2"}) {
        FuzzSeed seed{text, {}};
        for (const char* character = text; *character != '\0'; ++character) {
            const screenlink::TokenFrames frames = screenlink::encodeToken({std::nullopt, *character});
            add(seed.bytes, frames.announce);
            add(seed.bytes, frames.confirm);
        }
        seeds.push_back(seed);
    }
    return seeds;
}
