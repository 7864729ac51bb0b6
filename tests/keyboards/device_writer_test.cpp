#include "keyboards/device/device_writer.h"

#include "keyboards/virtual_keyboard.h"
#include "platform/locked.h"
#include "platform/monotonic_clock.h"
#include "support/eventually.h"

#include <gmock/gmock.h>

#include <ctime>

namespace glimra::keyboards {
namespace {

using namespace std::chrono_literals;
using testing::Each;
using testing::ElementsAre;
using tests::eventually;

constexpr KeyName kEsc = 0x01;
constexpr Rgb kRed{255, 0, 0};

/// What the test and the device share; the device itself belongs to its writer.
struct State {
    /// Why the device is not there; empty when it is.
    std::string absence;
    bool isBroken = false;
    Duration writingTime{};
    bool hangs = false;
    int opened = 0;
    int closed = 0;
    int claimed = 0;
    std::vector<std::size_t> frameSizes;
    LightColors colors{};
    /// The texts that were reported.
    std::vector<std::string> told;

    Rgb esc() const { return colors[*keyIndex(kEsc)]; }
};

struct Bench {
    platform::Locked<State> state;
    WakeEvent news;
    WakeEvent release;

    /// Waits until it is so; not so long that the regular refresh could be what makes it so.
    template <class Condition>
    testing::AssertionResult becomes(Condition isSo) {
        return testing::AssertionResult(eventually([&] { return state.with(isSo); }, 9s));
    }
    testing::AssertionResult hasFrames(std::size_t count) {
        return becomes([&](const State& s) { return s.frameSizes.size() >= count; });
    }
    DeviceWriter::Report report() {
        return
            [this](const DeviceEvent& event) { state.with([&](State& s) { s.told.push_back(event.text); }); };
    }
    std::unique_ptr<KeyboardDevice> device();
};

class BenchDevice final : public KeyboardDevice {
public:
    explicit BenchDevice(Bench& bench) : m_bench(bench) {}

    OpenResult look(const WakeEvent&) override { return {}; }
    OpenResult open(const WakeEvent&) override {
        EXPECT_FALSE(m_isOpen);
        const std::string absence = m_bench.state.with([](State& s) {
            ++s.opened;
            return s.absence;
        });
        m_isOpen = absence.empty();
        return {.found = m_isOpen, .text = m_isOpen ? "Here it is." : absence};
    }
    DeviceStatus write(std::span<const KeyColor> keys) override {
        EXPECT_TRUE(m_isOpen && !keys.empty());
        const State after = m_bench.state.with([&](State& s) {
            if (s.isBroken) {
                s.absence = "Nothing there.";
                return s;
            }
            for (const KeyColor& key : keys)
                s.colors.at(key.key) = key.color;
            s.frameSizes.push_back(keys.size());
            return s;
        });
        if (after.isBroken)
            return {DeviceStatus::Kind::Lost, "Gone."};
        std::this_thread::sleep_for(after.writingTime);
        if (after.hangs)
            waitForInput(m_bench.release.fd(), -1, std::nullopt);
        return {};
    }
    void claim() override {
        m_bench.state.with([](State& s) { ++s.claimed; });
    }
    void close() override {
        EXPECT_TRUE(std::exchange(m_isOpen, false));
        m_bench.state.with([](State& s) { ++s.closed; });
    }
    DevicePace pace() const override { return {}; }
    int watchedFd() const override { return m_bench.news.fd(); }
    DeviceStatus serve() override {
        m_bench.news.clear();
        return {m_isOpen ? DeviceStatus::Kind::AllKeysNeeded : DeviceStatus::Kind::LookAgain, {}};
    }

private:
    Bench& m_bench;
    bool m_isOpen = false;
};

std::unique_ptr<KeyboardDevice> Bench::device() {
    return std::make_unique<BenchDevice>(*this);
}

KeyboardModel modelWithEsc(int red) {
    KeyboardModel model;
    model.perform(platform::SetLightingForKeyWithKeyName{kEsc, {red, 0, 0}}, {});
    return model;
}

TEST(DeviceWriter, ShowsTheNewestModelAndHandsTheDeviceBack) {
    Bench bench;
    DeviceWriter writer(bench.device(), bench.report());
    for (int red = 1; red <= 100; ++red)
        writer.show(modelWithEsc(red));
    EXPECT_TRUE(bench.becomes([](const State& s) { return s.esc() == kRed; }));
    const std::clock_t before = std::clock();
    std::this_thread::sleep_for(200ms);
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 50) << "nothing changes, so it rests";
    writer.stop();
    const State end = bench.state.copy();
    EXPECT_EQ(end.frameSizes.front(), kLightCount);
    EXPECT_LT(end.frameSizes.size(), 50U);
    EXPECT_EQ(end.closed, 1);
    EXPECT_THAT(end.told, ElementsAre("Here it is."));
}

TEST(DeviceWriter, SendsAllKeysWhenAskedAndWhenTheDeviceNeedsThem) {
    Bench bench;
    DeviceWriter writer(bench.device(), bench.report());
    writer.show(modelWithEsc(100));
    ASSERT_TRUE(bench.hasFrames(1));
    writer.resendAll();
    ASSERT_TRUE(bench.hasFrames(2));
    bench.news.set();
    ASSERT_TRUE(bench.hasFrames(3));
    writer.stop();
    EXPECT_THAT(bench.state.copy().frameSizes, Each(kLightCount));
    EXPECT_EQ(bench.state.copy().claimed, 1) << "another program may have changed the mode meanwhile";
}

TEST(DeviceWriter, HearsADeviceThatIsTooSlowForItsFrames) {
    Bench bench;
    bench.state.with([](State& s) { s.writingTime = 40ms; });
    KeyboardModel model;
    model.perform(platform::PulseSingleKey{kEsc, {100, 0, 0}, {0, 0, 100}, 300, true},
                  platform::monotonicNow());
    DeviceWriter writer(bench.device(), bench.report());
    writer.show(model);
    ASSERT_TRUE(bench.hasFrames(2));
    EXPECT_LT(bench.state.copy().frameSizes[1], kLightCount);
    bench.news.set();
    ASSERT_TRUE(
        bench.becomes([](const State& s) { return std::ranges::count(s.frameSizes, kLightCount) == 2; }));
    ASSERT_TRUE(bench.hasFrames(bench.state.copy().frameSizes.size() + 2));
    writer.stop();
    EXPECT_EQ(std::ranges::count(bench.state.copy().frameSizes, kLightCount), 2);
}

TEST(DeviceWriter, TellsOnceWhyTheDeviceIsNotThere) {
    Bench bench;
    bench.state.with([](State& s) { s.absence = "Nothing there."; });
    DeviceWriter writer(bench.device(), bench.report());
    ASSERT_TRUE(bench.becomes([](const State& s) { return s.told.size() == 1; }));
    bench.state.with([](State& s) { s.absence = "No permission."; });
    EXPECT_TRUE(bench.becomes([](const State& s) { return s.told.back() == "No permission."; }));
    const int opened = bench.state.with([](State& s) {
        s.absence = "Nothing there.";
        return s.opened;
    });
    bench.news.set();
    EXPECT_TRUE(bench.becomes([&](const State& s) { return s.opened > opened + 1; }));
    EXPECT_EQ(bench.state.copy().told.size(), 2U);

    const Time plugged = platform::monotonicNow();
    bench.state.with([](State& s) { s.absence.clear(); });
    bench.news.set();
    EXPECT_TRUE(bench.becomes([](const State& s) { return s.told.back() == "Here it is."; }));
    EXPECT_LT(platform::monotonicNow() - plugged, 400ms) << "no pause is waited out";
}

TEST(DeviceWriter, TellsALossOnceAndFindsTheDeviceAgain) {
    Bench bench;
    bench.state.with([](State& s) { s.isBroken = true; });
    DeviceWriter writer(bench.device(), bench.report());
    writer.show(modelWithEsc(100));
    ASSERT_TRUE(bench.becomes([](const State& s) { return s.opened == 2; }));
    bench.state.with([](State& s) {
        s.absence.clear();
        s.isBroken = false;
    });
    ASSERT_TRUE(bench.becomes([](const State& s) { return s.esc() == kRed; }));
    writer.stop();
    const State end = bench.state.copy();
    EXPECT_THAT(end.told, ElementsAre("Here it is.", "Gone.", "Here it is."));
    EXPECT_EQ(end.closed, 2);
}

TEST(DeviceWriter, NeverMakesItsCallerWaitForTheDevice) {
    Bench bench;
    bench.state.with([](State& s) { s.hangs = true; });
    Bench other;
    VirtualKeyboard keyboard(platform::monotonicNow);
    keyboard.LogiLedInit();
    int version[3] = {};
    EXPECT_TRUE(keyboard.LogiLedGetSdkVersion(version[0], version[1], version[2]));
    EXPECT_EQ(version[0], 9);
    keyboard.attach(bench.device(), bench.report());
    keyboard.LogiLedSetLighting(1, 1, 1);
    ASSERT_TRUE(bench.hasFrames(1));
    const Time begin = platform::monotonicNow();
    keyboard.LogiLedSetLighting(90, 0, 0);
    keyboard.attach(other.device(), other.report());
    EXPECT_LT(platform::monotonicNow() - begin, DeviceWriter::kStopLimit);

    // The next device waits for the one before it, and shows at once what is lit.
    EXPECT_EQ(bench.state.copy().closed, 0);
    bench.release.set();
    EXPECT_TRUE(other.hasFrames(1));
    EXPECT_EQ(bench.state.copy().closed, 1);
    EXPECT_THAT(bench.state.copy().told, ElementsAre("Here it is.")) << "nobody hears of it any more";
    keyboard.resendAll();
    EXPECT_TRUE(other.hasFrames(2));
    keyboard.LogiLedShutdown();
    EXPECT_TRUE(other.becomes([](const State& s) { return s.closed == 1; }));
    EXPECT_EQ(other.state.copy().esc().red, 230) << "it is handed back as it is, not made dark before";
}

} // namespace
} // namespace glimra::keyboards
