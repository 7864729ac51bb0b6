// From one captured row of pixels to a token: what each reading cycle costs besides the capture. The floor is
// reading the eleven pixels and nothing else. A run that allocates fails.
#include "screenlink/strip_decoder.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <vector>

namespace {

std::atomic<std::size_t> allocations = 0;

} // namespace

// Not inlined: seen together, GCC takes malloc and delete for a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using namespace glimra;

/// Two rows of the default width: a token announced and confirmed.
std::array<std::vector<std::uint32_t>, 2> makeRows(const screenlink::PixelOffsets& offsets) {
    const auto row = [&offsets](const screenlink::StripFrame& frame) {
        std::vector<std::uint32_t> pixels(80, 0);
        for (std::size_t i = 0; i < frame.size(); ++i)
            pixels[static_cast<std::size_t>(offsets[i])] = frame[i];
        return pixels;
    };
    const screenlink::TokenFrames frames = screenlink::encodeToken({'`', 'A'});
    return {row(frames.announce), row(frames.confirm)};
}

void decodeFrame(benchmark::State& state) {
    const screenlink::PixelOffsets offsets = screenlink::updatePixelOffsets(80.0);
    const auto rows = makeRows(offsets);
    screenlink::TokenAssembler assembler;
    std::size_t next = 0;
    std::size_t tokens = 0;
    const std::size_t before = allocations;
    for (auto _ : state) {
        const auto cells = screenlink::sampleCells({rows[next], {}, 0}, offsets);
        if (const auto frame = screenlink::decodeFrame(*cells))
            tokens += assembler.accept(*frame).has_value();
        next = 1 - next;
    }
    if (allocations != before)
        state.SkipWithError("decoding allocates");
    if (tokens < static_cast<std::size_t>(state.iterations()) / 2)
        state.SkipWithError("not every second frame gave a token");
}
BENCHMARK(decodeFrame);

void floorElevenPixels(benchmark::State& state) {
    const screenlink::PixelOffsets offsets = screenlink::updatePixelOffsets(80.0);
    const auto rows = makeRows(offsets);
    for (auto _ : state) {
        std::uint32_t sum = 0;
        for (const int offset : offsets)
            sum += rows[0][static_cast<std::size_t>(offset)];
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(floorElevenPixels);

} // namespace
