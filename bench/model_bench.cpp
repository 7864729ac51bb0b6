// What the keyboard model costs: a frame with the most effects that the application runs at once, a frame at
// rest, and a profile's bitmap. The floor is a copy of the colours, which every answer must make.

#include "keyboards/model/keyboard_model.h"
#include "lighting/led_bitmap.h"

#include <benchmark/benchmark.h>

namespace glimra::keyboards {
namespace {

constexpr int kPulsingKeys = 27;

/// Keys spread over the board, each at its own pace, as the glow of death pulses.
KeyboardModel pulsingModel() {
    KeyboardModel model;
    model.perform(platform::SetLighting{{50, 40, 50}}, Time::zero());
    for (int key = 0; key < kPulsingKeys; ++key) {
        const auto index = static_cast<std::size_t>(key) * kKeyCount / kPulsingKeys;
        const KeyName name = lighting::driverKeyName(lighting::kKeyboardLayout[index].code);
        model.perform(platform::PulseSingleKey{name, {50, 40, 50}, {100, 85, 100}, 650 + 9 * key, true},
                      Time::zero());
    }
    return model;
}

void colorsWith(benchmark::State& state, const KeyboardModel& model) {
    Time time{};
    for (auto _ : state) {
        time += kFrame;
        benchmark::DoNotOptimize(model.colorsAt(time));
    }
}

void copyOfColors(benchmark::State& state) {
    KeyColors colors = pulsingModel().colorsAt(Time::zero());
    for (auto _ : state) {
        benchmark::DoNotOptimize(colors.data());
        KeyColors copy = colors;
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(copyOfColors);

void colorsAtRest(benchmark::State& state) {
    colorsWith(state, KeyboardModel{});
}
BENCHMARK(colorsAtRest);

void colorsWith27Pulses(benchmark::State& state) {
    colorsWith(state, pulsingModel());
}
BENCHMARK(colorsWith27Pulses);

void nextChangeWith27Pulses(benchmark::State& state) {
    const KeyboardModel model = pulsingModel();
    Time time{};
    for (auto _ : state) {
        time = model.nextChange(time).value();
        benchmark::DoNotOptimize(time);
    }
}
BENCHMARK(nextChangeWith27Pulses);

void setBitmap(benchmark::State& state) {
    KeyboardModel model;
    const lighting::LedBitmap bitmap = lighting::blankBitmap();
    for (auto _ : state) {
        model.perform(platform::SetLightingFromBitmap{bitmap}, Time::zero());
        benchmark::DoNotOptimize(model);
    }
}
BENCHMARK(setBitmap);

} // namespace
} // namespace glimra::keyboards
