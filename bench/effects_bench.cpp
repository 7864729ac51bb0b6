#include "events/effects.h"

#include <benchmark/benchmark.h>

// What a frame of an animation costs the core, from its paint to the driver's door.

namespace glimra {
namespace {

/// Time that passes at once.
class HastyRunLoop final : public platform::RunLoop {
public:
    platform::Time now() const override { return m_now; }
    std::string dateAndTime(platform::Time) const override { return {}; }
    bool runUntil(platform::Time deadline) override {
        m_now = deadline;
        return true;
    }
    void terminate() override {}
    bool isTerminated() const override { return false; }
    platform::TimerId repeat(platform::Duration, std::function<void()>) override { return 0; }
    platform::TimerId after(platform::Duration, std::function<void()>) override { return 0; }
    void cancel(platform::TimerId) override {}
    void post(std::function<void()>) override {}

private:
    platform::Time m_now{0};
};

/// Takes everything, does nothing but count the frames.
class IdleDriver final : public platform::LedDriver {
public:
    int frames = 0;

    bool LogiLedInit() override { return true; }
    bool LogiLedGetSdkVersion(int&, int&, int&) override { return true; }
    bool perform(const platform::LedCall& call) override {
        benchmark::DoNotOptimize(&call);
        benchmark::ClobberMemory();
        frames += std::holds_alternative<platform::SetLightingFromBitmap>(call) ? 1 : 0;
        return true;
    }
    void LogiLedShutdown() override {}
};

class NoRandom final : public platform::RandomNumbers {
public:
    std::uint32_t uniform(std::uint32_t) override { return 0; }
};

/// "per_frame" is the time from one frame to the next, waits taking none.
void animation(benchmark::State& state, char code) {
    HastyRunLoop runLoop;
    IdleDriver driver;
    NoRandom random;
    const lighting::LightingState lightingState;
    lighting::LightingOutput lighting(driver, random, lightingState);
    events::Effects effects(runLoop, driver, random, lighting);
    const lighting::LedBitmap profile = lighting::blankBitmap();
    for ([[maybe_unused]] auto iteration : state)
        if (!effects.play(*events::findAnimation(code), profile, false))
            state.SkipWithError("the animation did not end");
    state.counters["per_frame"] =
        benchmark::Counter(driver.frames, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

BENCHMARK_CAPTURE(animation, rowSweep, 'G');
BENCHMARK_CAPTURE(animation, edgeSequence, 'A');
BENCHMARK_CAPTURE(animation, stripeRun, 'T');
BENCHMARK_CAPTURE(animation, edgeWipe, 'N');
BENCHMARK_CAPTURE(animation, wave, 'h');
BENCHMARK_CAPTURE(animation, rainbow, 'J');
BENCHMARK_CAPTURE(animation, ghostReturn, 'V');
BENCHMARK_CAPTURE(animation, framedFlash, 'H');
BENCHMARK_CAPTURE(animation, centreRipple, 'B');

} // namespace
} // namespace glimra
