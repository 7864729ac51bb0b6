// What a line of the trace costs: the longest, the most frequent, and one that nobody wants. The floor is the
// copy of as many bytes as the longest line has.

#include "lighting/led_bitmap.h"
#include "trace/trace_writer.h"

#include <benchmark/benchmark.h>

namespace glimra::trace {
namespace {

constexpr std::size_t kLongestLine = 1080;

void copyOfALine(benchmark::State& state) {
    const std::string line(kLongestLine, 'f');
    std::string copy;
    for (auto _ : state) {
        copy = line;
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(copyOfALine);

void write(benchmark::State& state, TraceKinds wanted, const std::function<void(TraceWriter&)>& line) {
    platform::Time now{};
    TraceWriter writer([&now] { return now += platform::Time(1'000'000); },
                       [](std::string_view written) { benchmark::DoNotOptimize(written.data()); }, wanted);
    for (auto _ : state)
        line(writer);
}

void bitmapLine(benchmark::State& state) {
    const lighting::LedBitmap bitmap = lighting::blankBitmap();
    write(state, TraceKinds::all(),
          [&](TraceWriter& writer) { writer.led(platform::SetLightingFromBitmap{bitmap}); });
}
BENCHMARK(bitmapLine);

void keyLine(benchmark::State& state) {
    write(state, TraceKinds::all(), [](TraceWriter& writer) {
        writer.led(platform::SetLightingForKeyWithKeyName{0xFFF1, {100, 50, 0}});
    });
}
BENCHMARK(keyLine);

void logLine(benchmark::State& state) {
    write(state, TraceKinds::all(),
          [](TraceWriter& writer) { writer.log("Showing test pattern on the keyboard.\n"); });
}
BENCHMARK(logLine);

void unwantedLine(benchmark::State& state) {
    const lighting::LedBitmap bitmap = lighting::blankBitmap();
    write(state, TraceKinds{},
          [&](TraceWriter& writer) { writer.led(platform::SetLightingFromBitmap{bitmap}); });
}
BENCHMARK(unwantedLine);

} // namespace
} // namespace glimra::trace
