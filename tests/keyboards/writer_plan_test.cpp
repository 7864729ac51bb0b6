#include "keyboards/device/writer_plan.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace glimra::keyboards {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

constexpr KeyName kEsc = 0x01;
constexpr KeyName kG1 = 0xFFF1;
constexpr Percentages kRed{100, 0, 0};
constexpr Percentages kBlack{0, 0, 0};

/// A plan in the company of a device that needs no time for a frame, at times that only this tells.
struct Scene {
    struct Frame {
        Time at;
        std::vector<KeyColor> keys;
    };

    WriterPlan plan;
    KeyboardModel model;
    Time now = 100s;
    DevicePace pace;
    bool isThere = true;
    Duration retryWithin = 1h;
    Duration writingTime{};
    std::vector<Time> searches;
    std::vector<Frame> frames;
    /// How often the writer would have been awake.
    int steps = 0;

    void perform(const platform::LedCall& call) { model.perform(call, now); }
    void light(KeyName key, const Percentages& color) {
        perform(platform::SetLightingForKeyWithKeyName{key, color});
    }
    void show() { plan.show(model, now); }

    void runFor(Duration duration) {
        const Time deadline = now + duration;
        while (now < deadline) {
            ++steps;
            const WriterPlan::Step step = plan.next(now);
            if (step.kind == WriterPlan::Step::Kind::Search) {
                search();
            } else if (step.kind == WriterPlan::Step::Kind::Write) {
                frames.push_back({now, {step.keys.begin(), step.keys.end()}});
                now += writingTime;
                plan.written(now);
            } else {
                const Time next = std::min(step.until.value_or(deadline), deadline);
                ASSERT_GT(next, now) << "the writer would spin";
                now = next;
            }
        }
    }
    /// Open, with everything sent and the record empty.
    void settle() {
        show();
        runFor(1s);
        frames.clear();
        steps = 0;
    }
    void search() {
        searches.push_back(now);
        if (isThere)
            plan.found(pace, now);
        else
            plan.notFound(retryWithin, now);
    }
};

KeyColor lit(KeyName name, Rgb color) {
    return {keyIndex(name).value(), color};
}

TEST(WriterPlan, SendsAllKeysOnceThenOnlyWhatChanges) {
    Scene scene;
    scene.runFor(10s);
    EXPECT_TRUE(scene.frames.empty()) << "nobody has shown anything yet";
    scene.show();
    scene.runFor(1s);
    ASSERT_EQ(scene.frames.size(), 1U);
    EXPECT_EQ(scene.frames[0].keys.size(), kLightCount);

    scene.light(kEsc, kRed);
    scene.light(kG1, kRed);
    scene.show();
    scene.light(kG1, kBlack);
    scene.show();
    scene.runFor(1s);
    ASSERT_EQ(scene.frames.size(), 2U) << "calls that follow one another are one frame";
    EXPECT_THAT(scene.frames[1].keys, ElementsAre(lit(kEsc, {255, 0, 0})));
}

TEST(WriterPlan, WakesForTheEdgesOfAFlashOnly) {
    Scene scene;
    scene.settle();
    const Time begin = scene.now;
    scene.perform(platform::FlashSingleKey{kEsc, kRed, 2000, 500});
    scene.show();
    scene.runFor(8s);
    ASSERT_EQ(scene.frames.size(), 4U);
    EXPECT_THAT(scene.frames[0].keys, ElementsAre(lit(kEsc, {255, 0, 0})));
    EXPECT_EQ(scene.frames[1].at, begin + 500ms);
    EXPECT_EQ(scene.frames[3].at, begin + 1500ms);
    EXPECT_THAT(scene.frames[3].keys, ElementsAre(lit(kEsc, {0, 0, 0})));
    EXPECT_LE(scene.steps, 14);
}

TEST(WriterPlan, ShowsBothEndsOfEffectsAndSendsANewModelBetweenTheirFramesAtOnce) {
    for (const auto& [key, halves] : {std::pair{kG1, 199}, std::pair{KeyName{0x14}, 160}}) {
        Scene scene;
        scene.settle();
        const Time begin = scene.now;
        scene.perform(platform::PulseSingleKey{kG1, kBlack, kRed, 100, true});
        scene.perform(platform::FlashSingleKey{0x14, {0, 0, 100}, 0, 20});
        scene.show();
        scene.runFor(10s);
        std::vector<Rgb> seen;
        for (const Scene::Frame& frame : scene.frames)
            for (const KeyColor& one : frame.keys)
                if (one.key == keyIndex(key).value())
                    seen.push_back(one.color);
        EXPECT_GE(seen.size(), static_cast<std::size_t>(halves)) << "each end is shown";
        EXPECT_EQ(std::ranges::adjacent_find(seen), seen.end());
        for (const Rgb color : seen)
            EXPECT_TRUE(color == Rgb{} || color == (Rgb{255, 0, 0}) || color == (Rgb{0, 0, 255}));

        for (int call = 1; call < 50; ++call) {
            scene.runFor(std::chrono::milliseconds(100 + call));
            scene.frames.clear();
            scene.light(kEsc, {call % 2 * 100, 0, 0});
            scene.show();
            const Time called = scene.now;
            scene.runFor(10ms);
            EXPECT_TRUE(std::ranges::any_of(scene.frames, [](const Scene::Frame& frame) {
                return frame.keys.front().key == keyIndex(kEsc).value();
            })) << (called - begin).count();
        }
    }
}

TEST(WriterPlan, SendsThirtyFramesASecondAtMostAndNoMoreThanTheDeviceTakes) {
    for (const auto& [interval, most] : {std::pair(0ms, 303U), std::pair(100ms, 101U)}) {
        Scene scene;
        scene.pace.interval = interval;
        scene.settle();
        const Time end = scene.now + 10s;
        for (int call = 0; scene.now < end; ++call) {
            scene.light(kEsc, {call % 101, 0, 0});
            scene.show();
            scene.runFor(3ms);
        }
        EXPECT_LE(scene.frames.size(), most);
        EXPECT_GE(scene.frames.size(), most * 9 / 10);
        for (std::size_t i = 2; i < scene.frames.size(); ++i)
            EXPECT_GE(scene.frames[i].at - scene.frames[i - 2].at, kFrame - WriterPlan::kLateness);
    }
}

TEST(WriterPlan, RepeatsTheLastFrameOfASeriesOnceForDevicesThatMayLoseIt) {
    Scene scene;
    scene.pace.repeatAfter = 100ms;
    scene.settle();
    scene.perform(platform::PulseSingleKey{kEsc, kBlack, kRed, 1000, false});
    scene.show();
    scene.runFor(8s);
    ASSERT_GE(scene.frames.size(), 25U);
    const Scene::Frame& last = scene.frames.back();
    const Scene::Frame& before = scene.frames[scene.frames.size() - 2];
    EXPECT_EQ(last.keys, before.keys);
    EXPECT_EQ(last.at, before.at + 100ms);
    EXPECT_LT(scene.frames.size(), 33U) << "in the middle of the series nothing is repeated";
}

TEST(WriterPlan, SendsEverythingAgainNowAndThenButNeverForMoreThanAHundredthOfTheTime) {
    Scene scene;
    scene.settle();
    scene.runFor(60s);
    EXPECT_EQ(scene.frames.size(), 6U);
    EXPECT_EQ(scene.frames.back().keys.size(), kLightCount);
    scene.frames.clear();
    scene.writingTime = 850ms;
    scene.runFor(350s);
    EXPECT_LE(scene.frames.size(), 5U);
}

TEST(WriterPlan, LooksForALostDeviceWithGrowingPausesAndSendsItEverything) {
    Scene scene;
    scene.light(kEsc, kRed);
    scene.settle();
    scene.runFor(20s);
    scene.isThere = false;
    scene.searches = {scene.now};
    scene.plan.lost(scene.now);
    scene.runFor(125s);
    std::vector<Duration> pauses;
    for (std::size_t i = 1; i < scene.searches.size(); ++i)
        pauses.push_back(scene.searches[i] - scene.searches[i - 1]);
    EXPECT_THAT(pauses, ElementsAre(500ms, 1s, 2s, 4s, 8s, 16s, 30s, 30s, 30s));

    scene.searches.clear();
    scene.plan.lookAgain(scene.now);
    const Time news = scene.now;
    scene.runFor(2s);
    EXPECT_THAT(scene.searches, ElementsAre(news + 100ms, news + 600ms, news + 1600ms));
    scene.retryWithin = 2s;
    scene.runFor(1min);
    EXPECT_GE(scene.searches.size(), 30U) << "where it costs nothing, and nothing tells";

    scene.isThere = true;
    scene.frames.clear();
    scene.runFor(5s);
    ASSERT_EQ(scene.frames.size(), 1U);
    EXPECT_EQ(scene.frames[0].keys.size(), kLightCount);
    EXPECT_THAT(scene.frames[0].keys, testing::Contains(lit(kEsc, {255, 0, 0})));

    for (int time = 0; time < 9; ++time) {
        scene.plan.lost(scene.now);
        scene.runFor(2100ms);
        ASSERT_TRUE(scene.plan.isOpen()) << "a loose plug is not punished";
    }
}

} // namespace
} // namespace glimra::keyboards
