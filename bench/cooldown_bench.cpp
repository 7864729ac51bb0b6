// What a cooldown message and the loading of a profile cost besides their waits, with all nine profiles
// showing cooldowns. The floor is what six keys cost on the driver alone.
#include "keyboards/virtual_keyboard.h"
#include "lighting/keyboard_layout.h"
#include "simulated/run_loop.h"
#include "support/events_machine.h"

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

using namespace glimra;

struct Machine {
    Machine() {
        for (const lighting::KeyRect& key : lighting::kKeyboardLayout)
            events.canvasKeyCodes.push_back(key.code);
        std::ranges::sort(events.canvasKeyCodes);
        keyboard.LogiLedInit();
        for (int profile = 1; profile <= 9; ++profile) {
            events.store.saveCooldownFlag(true, profile);
            events.store.loadProfile(profile);
        }
    }

    simulated::SimulatedRunLoop loop;
    keyboards::VirtualKeyboard keyboard{[this] { return loop.now(); }};
    tests::EventsMachine events{loop, keyboard};
};

/// Six keys go on cooldown, then six come back and blink: one of each in every two messages.
void sixKeysChange(benchmark::State& state) {
    Machine machine;
    bool on = true;
    for (auto _ : state) {
        machine.events.display.updateCooldowns('`', on ? "\x7E" : "\x01");
        on = !on;
    }
}
BENCHMARK(sixKeysChange);

void loadProfile(benchmark::State& state) {
    Machine machine;
    machine.events.store.saveProfile(3);
    for (auto _ : state)
        machine.events.store.loadProfileWithCooldowns(3);
}
BENCHMARK(loadProfile);

void floorSixKeysOnTheDriver(benchmark::State& state) {
    Machine machine;
    for (auto _ : state)
        for (platform::KeyName key = 2; key < 8; ++key)
            machine.keyboard.LogiLedSetLightingForKeyWithKeyName(key, 30, 0, 0);
}
BENCHMARK(floorSixKeysOnTheDriver);

} // namespace
