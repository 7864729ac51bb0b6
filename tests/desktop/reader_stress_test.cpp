#include "desktop/loop/thread_worker_loop.h"
#include "screenlink/calibration.h"
#include "screenlink/screen_reader.h"
#include "simulated/screen.h"
#include "simulated/services.h"
#include "simulated/user_defaults.h"
#include "support/real_time_loop.h"

#include <gtest/gtest.h>

namespace glimra::desktop {
namespace {

using namespace std::chrono_literals;
using screenlink::Token;

constexpr std::size_t kTokens = 10000;

/// Every third token jumps the queue; the others wait their turn.
Token tokenAt(std::size_t index) {
    constexpr std::string_view kOrdinary = "abdfghijklmnopqrstuvwxyzABFGHJKL";
    if (index % 3 == 0)
        return {'[', static_cast<char>(1 + index / 3 % 127)};
    return {std::nullopt, kOrdinary[(index - index / 3) % kOrdinary.size()]};
}

/// A screen on which the add-on is as fast as the reader: each capture shows the next frame.
class FastScreen final : public platform::ScreenCapture {
public:
    int activeDisplayCount() override { return 1; }
    double backingScaleFactor() override { return 1.0; }
    std::optional<platform::Image> capture(const platform::ScreenRect& rect) override {
        platform::Image image;
        image.pixels.resize(static_cast<std::size_t>(rect.width));
        if (m_frame == 2 * kTokens) // and after the last one the strip is dark
            return image;
        const screenlink::TokenFrames frames = screenlink::encodeToken(tokenAt(m_frame / 2));
        const screenlink::StripFrame& shown = m_frame % 2 == 0 ? frames.announce : frames.confirm;
        const auto width = static_cast<float>(rect.width);
        for (std::size_t i = 0; i < shown.size(); ++i)
            image.pixels[static_cast<std::size_t>(screenlink::cellPosition(i, width))] = shown[i];
        ++m_frame;
        return image;
    }

private:
    std::size_t m_frame = 0;
};

/// The reader's real thread, without its pauses.
class HurriedThread final : public platform::WorkerLoop, platform::LoopBody {
public:
    void start(platform::LoopBody& body) override {
        m_body = &body;
        thread.start(*this);
    }

    ThreadWorkerLoop thread;

private:
    void pass() override { m_body->pass(); }
    platform::Duration pause() const override { return 1us; }
    bool goesOn() const override { return m_body->goesOn(); }
    void left() override { m_body->left(); }

    platform::LoopBody* m_body = nullptr;
};

struct Silence final : platform::MessageLog {
    bool debugMode() const override { return true; }
    void appendLog(std::string_view) override {}
    void appendDebugLog(std::string_view) override {}
    void insertText(std::string_view) override {}
};

struct Replied final : platform::Application {
    explicit Replied(platform::RunLoop& runLoop) : loop(runLoop) {}
    void terminate() override {}
    void replyToApplicationShouldTerminate(bool) override { loop.terminate(); }
    platform::RunLoop& loop;
};

/// Whether `taken` can come from a stack onto which `pushed` was put in order: the last one in front.
bool couldComeFromTheFront(const std::vector<std::string>& pushed, const std::vector<std::string>& taken) {
    std::vector<std::string> stack;
    auto next = pushed.begin();
    for (const std::string& token : taken) {
        while ((stack.empty() || stack.back() != token) && next != pushed.end())
            stack.push_back(*next++);
        if (stack.empty() || stack.back() != token)
            return false;
        stack.pop_back();
    }
    return stack.empty() && next == pushed.end();
}

TEST(ReaderStress, NoTokenIsLostDoubledOrReorderedWhileEverythingElseGoesOn) {
    tests::RealTimeLoop loop;
    FastScreen screen;
    simulated::SimulatedScreen off;
    simulated::SimulatedCapture black(off);
    HurriedThread thread;
    Silence silence;
    simulated::NoSounds sounds;
    simulated::NoChildProcesses voice;
    simulated::InMemoryDefaults settings;
    Replied application(loop);
    events::MessageState messages;
    events::EffectState effects;
    events::CooldownState cooldowns;
    screenlink::MessageQueue queue(messages, effects, cooldowns);
    screenlink::SharedStripGeometry geometry(screenlink::stripGeometry(80.0, 2));
    screenlink::ReaderFlags flags;
    screenlink::ScanSettings scan;
    screenlink::ScreenReader reader(screen, loop, silence, application, queue, geometry, flags);
    screenlink::Calibration calibration(
        {loop, black, sounds, voice, settings, silence, messages, scan, geometry}, 40ms);

    std::vector<std::string> ordinary;
    std::vector<std::string> jumped;
    const auto takeAll = [&] {
        while (true) {
            messages.currentMessage.clear();
            queue.handleMessageQueue();
            if (messages.currentMessage.empty())
                return;
            (messages.currentMessage.size() == 2 ? jumped : ordinary).push_back(messages.currentMessage);
        }
    };
    int round = 0;
    loop.repeat(1ms, [&] {
        takeAll();
        ++round;
        geometry.set(screenlink::stripGeometry(60.0 + round % 100, round % 7));
        flags.suspendScreenReads = round % 5 == 0;
        if (ordinary.size() + jumped.size() >= kTokens)
            flags.keepTheScannerRunning = false;
    });
    loop.repeat(100ms, [&] { calibration.calibrateScreen(); });
    loop.after(60s, [&] { flags.keepTheScannerRunning = false; });

    reader.recordColorsThread(thread);
    while (loop.runUntil(loop.now() + 10ms)) {
    }
    thread.thread.join();
    takeAll();

    std::vector<std::string> expectedOrdinary;
    std::vector<std::string> expectedJumped;
    for (std::size_t i = 0; i < kTokens; ++i)
        (tokenAt(i).prefix ? expectedJumped : expectedOrdinary).push_back(tokenAt(i).text());
    EXPECT_EQ(ordinary, expectedOrdinary);
    EXPECT_TRUE(couldComeFromTheFront(expectedJumped, jumped));
}

} // namespace
} // namespace glimra::desktop
