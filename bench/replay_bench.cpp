#include "tools/replay/replay_run.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <sstream>

namespace glimra::tools {
namespace {

/// An hour of play: the add-on shows a token every 0.4 s, among them fights, cooldowns, profiles and
/// animations.
Script hourOfPlay() {
    constexpr std::array<std::string_view, 20> kTokens{"C", "`A", "[@", "w", "O", "2", "h", "1", "{A", "E",
                                                       "e", "A",  "I",  "i", "D", "U", "J", "j", "K",  "p"};
    constexpr int kTokenCount = 9000;
    std::stringstream text;
    text << "start\nfront \"com.blizzard.worldofwarcraft\"\n";
    for (std::size_t i = 0; i < kTokenCount; ++i)
        text << "show \"" << kTokens.at(i % kTokens.size()) << "\"\nwait 0.2\n";
    text << "quit\n";
    return std::get<Script>(readScript(text));
}

void replayAnHour(benchmark::State& state) {
    const Script script = hourOfPlay();
    std::FILE* const nowhere = std::fopen("/dev/null", "w");
    std::size_t lines = 0;
    for (auto _ : state) {
        ReplayRun run({}, [&](std::string_view line) {
            std::fwrite(line.data(), 1, line.size(), nowhere);
            ++lines;
        });
        run.run(script);
    }
    std::fclose(nowhere);
    state.counters["lines"] =
        benchmark::Counter(static_cast<double>(lines), benchmark::Counter::kAvgIterations);
}
BENCHMARK(replayAnHour)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace glimra::tools
