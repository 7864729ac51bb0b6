#pragma once

#include "lighting/led_bitmap.h"
#include "platform/led_driver.h"
#include "platform/run_loop.h"
#include "platform/system_services.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace glimra::test {

/// A machine with nothing but a clock and a keyboard that remembers what it was told.
class FakeKeyboard final : public platform::RunLoop,
                           public platform::LedDriver,
                           public platform::RandomNumbers {
public:
    struct Frame {
        platform::Time at;
        lighting::LedBitmap bitmap;
    };

    /// Every call, with its moment in milliseconds: "200 all 0 0 0".
    std::vector<std::string> calls;
    /// The frames among them.
    std::vector<Frame> frames;
    /// Done in the middle of every wait.
    std::function<void()> duringWait = [] {};
    std::uint32_t nextRandom = 0;

    platform::Time now() const override { return m_now; }
    std::string dateAndTime(platform::Time) const override { return {}; }
    bool runUntil(platform::Time deadline) override {
        if (!m_terminated)
            duringWait();
        if (m_terminated)
            return false;
        m_now = std::max(m_now, deadline);
        return true;
    }
    void terminate() override { m_terminated = true; }
    bool isTerminated() const override { return m_terminated; }
    platform::TimerId repeat(platform::Duration, std::function<void()>) override { return 0; }
    platform::TimerId after(platform::Duration, std::function<void()>) override { return 0; }
    void cancel(platform::TimerId) override {}
    void post(std::function<void()>) override {}

    bool LogiLedInit() override { return true; }
    bool LogiLedGetSdkVersion(int&, int&, int&) override { return true; }
    bool LogiLedSetTargetDevice(int target) override { return note("target", {target}); }
    bool LogiLedSetLighting(int red, int green, int blue) override { return note("all", {red, green, blue}); }
    bool LogiLedSetLightingFromBitmap(platform::LedBitmapView view) override {
        std::ranges::copy(view, frames.emplace_back(Frame{m_now, {}}).bitmap.begin());
        return note("frame", {});
    }
    bool LogiLedSetLightingForKeyWithKeyName(platform::KeyName key, int red, int green, int blue) override {
        return note("key", {static_cast<int>(key), red, green, blue});
    }
    bool LogiLedFlashSingleKey(platform::KeyName key, int, int, int, int, int) override {
        return note("flash", {static_cast<int>(key)});
    }
    bool LogiLedPulseSingleKey(platform::KeyName key, int red, int green, int blue, int finishRed,
                               int finishGreen, int finishBlue, int duration, bool isInfinite) override {
        return note("pulse", {static_cast<int>(key), red, green, blue, finishRed, finishGreen, finishBlue,
                              duration, isInfinite});
    }
    bool LogiLedStopEffectsOnKey(platform::KeyName key) override {
        return note("stop", {static_cast<int>(key)});
    }
    bool LogiLedStopEffects() override { return note("stop all", {}); }
    void LogiLedShutdown() override {}

    std::uint32_t uniform(std::uint32_t upperBound) override { return nextRandom++ % upperBound; }

private:
    bool note(const std::string& what, const std::vector<int>& arguments) {
        std::string line =
            std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(m_now).count()) + " " + what;
        for (const int argument : arguments)
            line += " " + std::to_string(argument);
        calls.push_back(line);
        return true;
    }

    platform::Time m_now{0};
    bool m_terminated = false;
};

} // namespace glimra::test
