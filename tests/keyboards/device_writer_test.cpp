#include "keyboards/device/device_writer.h"

#include "keyboards/virtual_keyboard.h"
#include "platform/monotonic_clock.h"

#include <condition_variable>
#include <gmock/gmock.h>
#include <mutex>
#include <optional>
#include <vector>

#include <ctime>

namespace glimra::keyboards {
namespace {

using namespace std::chrono_literals;
using Kind = DeviceEvent::Kind;

constexpr KeyName kEsc = 0x01;

/// What the test and the device share; the device itself belongs to its writer.
class Bench {
public:
    struct State {
        bool isThere = true;
        bool isBroken = false;
        bool needsAllKeys = false;
        Duration writingTime{};
        bool hangs = false;
        int opened = 0;
        int closed = 0;
        bool isOpen = false;
        bool wasAbused = false;
        std::vector<std::size_t> frameSizes;
        KeyColors colors{};
        std::vector<DeviceEvent> events;
    };

    template <class Use>
    auto with(Use use) {
        const std::scoped_lock lock(m_mutex);
        m_changed.notify_all();
        return use(m_state);
    }
    template <class Condition>
    bool waitFor(Condition isSo) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, 20s, [&] { return isSo(m_state); });
    }
    DeviceWriter::Report report() {
        return [this](const DeviceEvent& event) { with([&](State& s) { s.events.push_back(event); }); };
    }
    std::unique_ptr<KeyboardDevice> device();

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    State m_state;
};

class BenchDevice final : public KeyboardDevice {
public:
    explicit BenchDevice(Bench& bench) : m_bench(bench) {}

    OpenResult open(const WakeEvent& stop) override {
        m_stop = &stop;
        return m_bench.with([](Bench::State& s) {
            s.wasAbused |= s.isOpen;
            ++s.opened;
            s.isOpen = s.isThere;
            return OpenResult{s.isThere, s.isThere ? "Here it is." : "Nothing there."};
        });
    }
    DeviceStatus write(std::span<const KeyColor> keys) override {
        Duration duration{};
        bool hangs = false;
        const DeviceStatus status = m_bench.with([&](Bench::State& s) {
            s.wasAbused |= !s.isOpen || keys.empty();
            duration = s.writingTime;
            hangs = s.hangs;
            if (s.isBroken)
                return DeviceStatus{DeviceStatus::Kind::Lost, "Gone."};
            for (const KeyColor& key : keys)
                s.colors[key.key] = key.color;
            s.frameSizes.push_back(keys.size());
            return DeviceStatus();
        });
        std::this_thread::sleep_for(duration);
        if (hangs)
            waitForInput(m_release.fd(), -1, std::nullopt);
        return status;
    }
    void close() override {
        m_bench.with([](Bench::State& s) {
            s.wasAbused |= !s.isOpen;
            s.isOpen = false;
            ++s.closed;
        });
    }
    DevicePace pace() const override { return {}; }
    int watchedFd() const override { return m_news.fd(); }
    DeviceStatus serve() override {
        m_news.clear();
        return {DeviceStatus::Kind::AllKeysNeeded, {}};
    }

    static inline WakeEvent m_news;
    static inline WakeEvent m_release;

private:
    Bench& m_bench;
    const WakeEvent* m_stop = nullptr;
};

std::unique_ptr<KeyboardDevice> Bench::device() {
    return std::make_unique<BenchDevice>(*this);
}

KeyboardModel modelWithEsc(Percentages color) {
    KeyboardModel model;
    model.perform(platform::SetLightingForKeyWithKeyName{kEsc, color}, {});
    return model;
}

Rgb escOf(const Bench::State& state) {
    return state.colors[*keyIndex(kEsc)];
}

TEST(DeviceWriter, ShowsTheNewestModelAndHandsTheDeviceBack) {
    Bench bench;
    DeviceWriter writer(bench.device(), bench.report());
    for (int red = 1; red <= 100; ++red)
        writer.show(modelWithEsc({red, 0, 0}));
    EXPECT_TRUE(bench.waitFor([](const Bench::State& s) { return escOf(s) == Rgb{255, 0, 0}; }));
    const std::clock_t before = std::clock();
    std::this_thread::sleep_for(200ms);
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 50) << "nothing changes, so it rests";
    writer.stop();
    bench.with([](const Bench::State& s) {
        EXPECT_EQ(s.frameSizes.front(), kKeyCount);
        EXPECT_LT(s.frameSizes.size(), 50U);
        EXPECT_EQ(s.closed, 1);
        EXPECT_FALSE(s.wasAbused);
        ASSERT_EQ(s.events.size(), 1U);
        EXPECT_EQ(s.events[0].kind, Kind::Found);
    });
}

TEST(DeviceWriter, SendsAllKeysWhenAskedAndWhenTheDeviceNeedsThem) {
    Bench bench;
    DeviceWriter writer(bench.device(), bench.report());
    writer.show(modelWithEsc({100, 0, 0}));
    ASSERT_TRUE(bench.waitFor([](const Bench::State& s) { return s.frameSizes.size() == 1; }));
    writer.resendAll();
    ASSERT_TRUE(bench.waitFor([](const Bench::State& s) { return s.frameSizes.size() == 2; }));
    BenchDevice::m_news.set();
    ASSERT_TRUE(bench.waitFor([](const Bench::State& s) { return s.frameSizes.size() == 3; }));
    writer.stop();
    bench.with([](const Bench::State& s) { EXPECT_THAT(s.frameSizes, testing::Each(kKeyCount)); });
}

TEST(DeviceWriter, HearsADeviceThatIsTooSlowForItsFrames) {
    Bench bench;
    bench.with([](Bench::State& s) { s.writingTime = 40ms; });
    KeyboardModel model;
    model.perform(platform::PulseSingleKey{kEsc, {100, 0, 0}, {0, 0, 100}, 300, true},
                  platform::monotonicNow());
    DeviceWriter writer(bench.device(), bench.report());
    writer.show(model);
    ASSERT_TRUE(bench.waitFor([](const Bench::State& s) { return s.frameSizes.size() == 2; }));
    BenchDevice::m_news.set();
    const std::size_t sent = bench.with([](const Bench::State& s) { return s.frameSizes.size(); });
    ASSERT_TRUE(bench.waitFor([&](const Bench::State& s) { return s.frameSizes.size() == sent + 4; }));
    writer.stop();
    bench.with([&](const Bench::State& s) {
        EXPECT_EQ(std::count(s.frameSizes.begin() + 2, s.frameSizes.end(), kKeyCount), 1);
    });
}

TEST(DeviceWriter, TellsALossOnceAndFindsTheDeviceAgain) {
    Bench bench;
    bench.with([](Bench::State& s) { s.isBroken = true; });
    DeviceWriter writer(bench.device(), bench.report());
    writer.show(modelWithEsc({100, 0, 0}));
    ASSERT_TRUE(bench.waitFor([](const Bench::State& s) { return s.closed == 1; }));
    bench.with([](Bench::State& s) { s.isThere = s.isBroken = false; });
    ASSERT_TRUE(bench.waitFor([](const Bench::State& s) { return s.opened == 2; }));
    bench.with([](Bench::State& s) { s.isThere = true; });
    ASSERT_TRUE(bench.waitFor([](const Bench::State& s) { return escOf(s) == Rgb{255, 0, 0}; }));
    writer.stop();
    bench.with([](const Bench::State& s) {
        std::vector<Kind> kinds;
        for (const DeviceEvent& event : s.events)
            kinds.push_back(event.kind);
        EXPECT_THAT(kinds, testing::ElementsAre(Kind::Found, Kind::Lost, Kind::Found));
        EXPECT_FALSE(s.wasAbused);
    });
}

TEST(DeviceWriter, NeverMakesItsCallerWaitForTheDevice) {
    Bench bench;
    bench.with([](Bench::State& s) { s.writingTime = 300ms; });
    VirtualKeyboard keyboard(platform::monotonicNow);
    keyboard.LogiLedInit();
    keyboard.attach(bench.device(), bench.report());
    Duration longest{};
    const auto timed = [&](auto call) {
        const Time begin = platform::monotonicNow();
        call();
        longest = std::max(longest, platform::monotonicNow() - begin);
    };
    keyboard.LogiLedSetLighting(1, 1, 1);
    ASSERT_TRUE(bench.waitFor([](const Bench::State& s) { return s.frameSizes.size() == 1; }));
    for (int i = 0; i < 1000; ++i)
        timed([&] { keyboard.LogiLedSetLighting(i % 101, 0, 0); });
    timed([&] { keyboard.detach(); });
    Bench other;
    timed([&] { keyboard.attach(other.device(), other.report()); });
    EXPECT_LT(longest, 150ms);

    // The next device waits for the one before it, and shows at once what is lit.
    EXPECT_TRUE(other.waitFor([](const Bench::State& s) { return s.frameSizes.size() == 1; }));
    bench.with([](const Bench::State& s) { EXPECT_EQ(s.closed, 1); });
    keyboard.LogiLedShutdown();
    other.with([](const Bench::State& s) {
        EXPECT_EQ(s.closed, 1);
        EXPECT_EQ(escOf(s).red, 230) << "it is handed back as it is, not made dark before";
    });
}

TEST(DeviceWriter, LeavesAHangingDeviceBehind) {
    Bench bench;
    bench.with([](Bench::State& s) { s.hangs = true; });
    DeviceWriter writer(bench.device(), bench.report());
    writer.show(modelWithEsc({100, 0, 0}));
    ASSERT_TRUE(bench.waitFor([](const Bench::State& s) { return s.frameSizes.size() == 1; }));
    const Time begin = platform::monotonicNow();
    writer.stop();
    EXPECT_LT(platform::monotonicNow() - begin, DeviceWriter::kStopLimit + 300ms);
    bench.with([](Bench::State& s) { s.events.clear(); });
    const std::shared_ptr<const WakeEvent> done = writer.leave();
    BenchDevice::m_release.set();
    // It is still closed properly when it comes to itself, and nobody is told any more.
    EXPECT_TRUE(waitForInput(done->fd(), -1, platform::monotonicNow() + 20s).first);
    bench.with([](const Bench::State& s) {
        EXPECT_EQ(s.closed, 1);
        EXPECT_TRUE(s.events.empty());
    });
    BenchDevice::m_release.clear();
}

} // namespace
} // namespace glimra::keyboards
