// What a real keyboard costs the application: how long the main thread is held up while a slow device is
// written to, how much less than everything is sent, and the writer's CPU time. Ends with 1 when a goal is
// missed.

#include "events/effects.h"
#include "keyboards/device/writer_plan.h"
#include "keyboards/openrgb/openrgb_device.h"
#include "keyboards/openrgb/stand_in_server.h"
#include "keyboards/virtual_keyboard.h"
#include "platform/monotonic_clock.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace glimra;
using namespace glimra::keyboards;
using namespace std::chrono_literals;

constexpr Duration kWritingTime = 10ms;
constexpr auto kLongestStall = 1ms;
constexpr double kMostCpuPercent = 2.0;
constexpr int kStormRounds = 20;

/// Takes `kWritingTime` for a frame, as a keyboard on a wire does.
class SlowDevice final : public KeyboardDevice {
public:
    static inline std::atomic<int> frames = 0;

    OpenResult look(const WakeEvent&) override { return {true, {}}; }
    OpenResult open(const WakeEvent&) override { return {true, {}}; }
    DeviceStatus write(std::span<const KeyColor>) override {
        std::this_thread::sleep_for(kWritingTime);
        ++frames;
        return {};
    }
    void claim() override {}
    void close() override {}
    DevicePace pace() const override { return {}; }
    int watchedFd() const override { return -1; }
    DeviceStatus serve() override { return {}; }
};

class NoRandom final : public platform::RandomNumbers {
public:
    std::uint32_t uniform(std::uint32_t) override { return 0; }
};

/// Time that passes at once, and somebody who is told how far it goes.
class HastyRunLoop final : public platform::RunLoop {
public:
    std::function<void(Time deadline)> pass = [](Time) {};

    Time now() const override { return m_now; }
    std::string dateAndTime(Time) const override { return {}; }
    bool runUntil(Time deadline) override {
        pass(deadline);
        m_now = deadline;
        return true;
    }
    void terminate() override {}
    bool isTerminated() const override { return false; }
    platform::TimerId repeat(Duration, std::function<void()>) override { return 0; }
    platform::TimerId after(Duration, std::function<void()>) override { return 0; }
    void cancel(platform::TimerId) override {}
    void post(std::function<void()>) override {}

private:
    Time m_now{1h};
};

/// Every animation there is, one after the other.
void playAll(HastyRunLoop& runLoop, platform::LedDriver& keyboard) {
    NoRandom random;
    const lighting::LightingState state;
    lighting::LightingOutput output(keyboard, random, state);
    events::Effects effects(runLoop, keyboard, random, output);
    for (const events::Animation& animation : events::animations())
        if (!effects.play(animation, lighting::blankBitmap(), false))
            throw std::runtime_error("an animation did not end");
}

struct Stalls {
    int frames = 0;
    Duration longest{};
    /// Among the frames in the middle of which the system gave the processor to nobody else.
    Duration longestOfOurs{};
};

/// The time that the main thread spends on each frame of a storm, when it need not wait for anything.
Stalls storm(bool withDevice) {
    VirtualKeyboard keyboard(platform::monotonicNow);
    keyboard.LogiLedInit();
    if (withDevice)
        keyboard.attach(std::make_unique<SlowDevice>(), {});
    const auto switches = [] {
        rusage usage{};
        getrusage(RUSAGE_THREAD, &usage);
        return usage.ru_nivcsw;
    };
    Stalls stalls;
    long switchesBefore = 0;
    Time begin{};
    HastyRunLoop runLoop;
    runLoop.pass = [&](Time) {
        const Duration duration = platform::monotonicNow() - begin;
        ++stalls.frames;
        stalls.longest = std::max(stalls.longest, duration);
        if (switches() == switchesBefore)
            stalls.longestOfOurs = std::max(stalls.longestOfOurs, duration);
        // Some real time, so that the device is in the middle of a frame at every stage of the storm.
        std::this_thread::sleep_for(100us);
        switchesBefore = switches();
        begin = platform::monotonicNow();
    };
    begin = platform::monotonicNow();
    for (int round = 0; round < kStormRounds; ++round)
        playAll(runLoop, keyboard);
    keyboard.LogiLedShutdown();
    return stalls;
}

double microseconds(Duration duration) {
    return std::chrono::duration<double, std::micro>(duration).count();
}

bool benchStalls() {
    std::printf("Main thread, over a storm of all animations\n"
                "%-38s %10s %14s %22s\n",
                "", "frames", "longest us", "longest, undisturbed us");
    Stalls with;
    for (const bool withDevice : {false, true}) {
        const int before = SlowDevice::frames;
        const Stalls stalls = storm(withDevice);
        std::printf("%-38s %10d %14.0f %22.0f\n", withDevice ? "device of 10 ms a frame" : "no device",
                    stalls.frames, microseconds(stalls.longest), microseconds(stalls.longestOfOurs));
        if (withDevice)
            std::printf("  the device was given %d frames\n", SlowDevice::frames - before);
        with = stalls;
    }
    return with.longestOfOurs < kLongestStall;
}

/// A keyboard that takes 14 keys in a report of 64 bytes, and commits with one of 20.
std::size_t reportBytes(std::size_t keys) {
    return (keys + 13) / 14 * 64 + 20;
}

struct Traffic {
    std::size_t frames = 0;
    std::size_t keys = 0;
    std::size_t bytes = 0;
};

/// What the plan sends while the animations run at their own pace, reckoned without real time.
Traffic trafficOfAnimations() {
    HastyRunLoop runLoop;
    VirtualKeyboard keyboard([&] { return runLoop.now(); });
    keyboard.LogiLedInit();
    WriterPlan plan;
    plan.next(runLoop.now());
    plan.found({}, runLoop.now());
    keyboard.changed.observe([&] { plan.show(keyboard.model(), runLoop.now()); });
    Traffic traffic;
    runLoop.pass = [&](Time deadline) {
        for (Time now = runLoop.now(); now < deadline;) {
            const WriterPlan::Step step = plan.next(now);
            if (step.kind == WriterPlan::Step::Kind::Write) {
                ++traffic.frames;
                traffic.keys += step.keys.size();
                traffic.bytes += reportBytes(step.keys.size());
            } else {
                now = step.until.value_or(deadline);
            }
        }
    };
    playAll(runLoop, keyboard);
    return traffic;
}

void benchTraffic() {
    const Traffic sent = trafficOfAnimations();
    const auto perFrame = [&](std::size_t sum) {
        return static_cast<double>(sum) / static_cast<double>(sent.frames);
    };
    const std::size_t all = reportBytes(kKeyCount);
    std::printf("\nSent per frame, over all animations (%zu frames)\n%-38s %10s %14s\n", sent.frames, "",
                "keys", "bytes (USB)");
    std::printf("%-38s %10zu %14zu\n", "every key", kKeyCount, all);
    std::printf("%-38s %10.1f %14.1f   %.0f %%\n", "changed keys only", perFrame(sent.keys),
                perFrame(sent.bytes), 100.0 * perFrame(sent.bytes) / static_cast<double>(all));
}

/// How well the ends of an effect (a pulse at its brightest and darkest, a flash's edges) are shown by a
/// device that takes every frame at once, reckoned without real time.
struct Ends {
    int missed = 0;
    Duration latest{};
};

/// One effect on a key of its own: from black to blue and back, or on and off.
struct BenchEffect {
    const char* name;
    platform::LedCall call;
    /// From one end to the other.
    Duration half;

    KeyName key() const {
        return std::visit(
            [](const auto& one) -> KeyName {
                if constexpr (requires { one.keyName; })
                    return one.keyName;
                return 0;
            },
            call);
    }
};

BenchEffect pulse(const char* name, KeyName key, int ms) {
    return {name, platform::PulseSingleKey{key, {0, 0, 0}, {0, 0, 100}, ms, true},
            std::chrono::milliseconds(ms) / 2};
}

BenchEffect flash(const char* name, KeyName key, int ms) {
    return {name, platform::FlashSingleKey{key, {0, 0, 100}, 0, ms}, std::chrono::milliseconds(ms)};
}

/// Shows them together for some time; returns the frames a second.
double showTogether(std::span<const BenchEffect> effects, std::span<Ends> ends) {
    constexpr Duration kShown = 60s;
    constexpr Time kBegin = 1h;
    KeyboardModel model;
    WriterPlan plan;
    plan.show(model, kBegin - 2s);
    plan.found({}, kBegin - 2s);
    for (const BenchEffect& effect : effects)
        model.perform(effect.call, kBegin);
    LightColors shown{};
    std::vector<Time> nextEnd(effects.size(), kBegin + kShown);
    for (std::size_t i = 0; i < effects.size(); ++i)
        nextEnd[i] = kBegin + effects[i].half;
    bool isBegun = false;
    int frames = 0;
    for (Time now = kBegin - 2s; now < kBegin + kShown;) {
        const WriterPlan::Step step = plan.next(now);
        if (step.kind == WriterPlan::Step::Kind::Write) {
            frames += isBegun ? 1 : 0;
            for (const KeyColor& key : step.keys)
                shown.at(key.key) = key.color;
            plan.written(now);
            // Which ends are shown now for the first time, and which can't be any more.
            for (std::size_t i = 0; isBegun && i < effects.size(); ++i)
                for (; nextEnd[i] <= now; nextEnd[i] += effects[i].half) {
                    const bool isOdd = (nextEnd[i] - kBegin) / effects[i].half % 2 != 0;
                    const bool isBright =
                        isOdd == std::holds_alternative<platform::PulseSingleKey>(effects[i].call);
                    if (shown.at(keyIndex(effects[i].key()).value()).blue == (isBright ? 255 : 0))
                        ends[i].latest = std::max(ends[i].latest, now - nextEnd[i]);
                    else if (now - nextEnd[i] >= effects[i].half)
                        ++ends[i].missed;
                    else
                        break;
                }
            continue;
        }
        const Time until = step.until.value_or(kBegin + kShown);
        if (!isBegun && until >= kBegin) {
            now = kBegin;
            plan.show(model, now);
            isBegun = true;
            continue;
        }
        now = until;
    }
    return frames / std::chrono::duration<double>(kShown).count();
}

bool benchEnds() {
    const BenchEffect effects[] = {pulse("w, pulse of 400 ms", 1, 400), pulse("x, pulse of 300 ms", 2, 300),
                                   pulse("y, pulse of 200 ms", 3, 200), pulse("z, pulse of 100 ms", 4, 100),
                                   flash("flash of 75 ms", 5, 75),      flash("flash of 500 ms", 6, 500)};
    std::printf("\nBrightest and darkest moments over a minute\n%-38s %10s %14s %14s\n", "", "missed",
                "latest, ms", "frames/s");
    const auto print = [](const char* name, const Ends& ends, double rate) {
        std::printf("%-38s %10d %14.1f %14.1f\n", name, ends.missed, microseconds(ends.latest) / 1000.0,
                    rate);
        return ends.missed == 0;
    };
    bool isGood = true;
    for (const BenchEffect& effect : effects) {
        Ends ends;
        const double rate = showTogether({&effect, 1}, {&ends, 1});
        isGood &= print(effect.name, ends, rate);
    }
    std::array<Ends, std::size(effects)> together{};
    const double rate = showTogether(effects, together);
    for (std::size_t i = 0; i < std::size(effects); ++i)
        isGood &= print((std::string("all at once: ") + effects[i].name).c_str(), together[i], rate);
    return isGood;
}

/// A stand-in OpenRGB server in a process of its own, so that its work is not counted.
class ServerProcess {
public:
    ServerProcess() {
        int toChild[2];
        int toParent[2];
        if (pipe(toChild) != 0 || pipe(toParent) != 0)
            throw std::runtime_error("no pipe");
        m_child = fork();
        if (m_child == 0) {
            close(toChild[1]);
            serve(toChild[0], toParent[1]);
        }
        close(toChild[0]);
        close(toParent[1]);
        m_hold = toChild[1];
        if (read(toParent[0], &m_port, sizeof m_port) != sizeof m_port)
            throw std::runtime_error("no stand-in server");
        close(toParent[0]);
    }
    ~ServerProcess() {
        close(m_hold);
        waitpid(m_child, nullptr, 0);
    }
    std::uint16_t port() const { return m_port; }

private:
    [[noreturn]] static void serve(int lifeline, int answer) {
        {
            const tests::StandInServer server({tests::fullKeyboard()});
            const std::uint16_t port = server.port();
            char unused = 0;
            if (write(answer, &port, sizeof port) == sizeof port)
                while (read(lifeline, &unused, 1) > 0) {
                }
        }
        _exit(0);
    }

    pid_t m_child = 0;
    int m_hold = -1;
    std::uint16_t m_port = 0;
};

struct Load {
    double cpuPercent = 0;
    /// How often a thread went to sleep in that time, by waking which it must have been.
    long sleeps = 0;
};

/// What this process uses while the main thread sleeps.
Load loadOver(Duration duration) {
    const auto usage = [] {
        rusage u{};
        getrusage(RUSAGE_SELF, &u);
        return u;
    };
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    const rusage before = usage();
    std::this_thread::sleep_for(duration);
    const rusage after = usage();
    const double cpu = seconds(after.ru_utime) + seconds(after.ru_stime) - seconds(before.ru_utime) -
                       seconds(before.ru_stime);
    // One of them is the main thread's own.
    return {100.0 * cpu / std::chrono::duration<double>(duration).count(),
            after.ru_nvcsw - before.ru_nvcsw - 1};
}

bool benchCpu(const char* name, std::unique_ptr<KeyboardDevice> device) {
    VirtualKeyboard keyboard(platform::monotonicNow);
    keyboard.LogiLedInit();
    keyboard.attach(std::move(device), {});
    keyboard.LogiLedSetLighting(10, 20, 30);
    std::this_thread::sleep_for(1s);
    const Load rest = loadOver(5s);
    for (const lighting::KeyRect& key : lighting::kKeyboardLayout)
        keyboard.LogiLedPulseSingleKey(lighting::driverKeyName(key.code), 0, 0, 0, 100, 100, 100, 800, true);
    std::this_thread::sleep_for(1s);
    const Load pulse = loadOver(10s);
    keyboard.LogiLedShutdown();
    std::printf("%-38s %10.3f %14ld %14.3f\n", name, rest.cpuPercent, rest.sleeps, pulse.cpuPercent);
    return rest.sleeps <= 0 && pulse.cpuPercent < kMostCpuPercent;
}

} // namespace

int main() {
    const ServerProcess server; // before there are threads
    bool isGood = benchStalls();
    benchTraffic();
    isGood &= benchEnds();
    std::printf("\nWriter's CPU, %% of a core\n%-38s %10s %14s %14s\n", "", "at rest", "wake-ups",
                "full pulse");
    isGood &= benchCpu("device of 10 ms a frame", std::make_unique<SlowDevice>());
    isGood &= benchCpu("OpenRGB, 104 keys",
                       std::make_unique<openrgb::OpenRgbDevice>(openrgb::Options{
                           .server = {"127.0.0.1", server.port()}, .keyboardName = {}, .timing = {}}));
    std::printf("\n%s\n", isGood ? "All goals are met." : "A goal is missed.");
    return isGood ? 0 : 1;
}
