#pragma once

#include "keyboards/virtual_keyboard.h"

namespace glimra::tools {

/// The keyboard of a run. It is a virtual one that takes every call and says that its driver has version
/// 9.0.0. After the application has shut it down, it goes on showing its last colours.
class ShownKeyboard final : public platform::LedDriver {
public:
    explicit ShownKeyboard(std::function<platform::Time()> now) : m_keyboard(std::move(now)) {}

    const keyboards::KeyboardModel& model() const { return m_keyboard.model(); }
    /// Told after each call that may have changed what is seen.
    platform::Signal<>& changed() { return m_keyboard.changed; }

    bool LogiLedInit() override { return m_keyboard.LogiLedInit(); }
    bool LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) override {
        majorNumber = 9;
        minorNumber = 0;
        buildNumber = 0;
        return true;
    }
    bool perform(const platform::LedCall& call) override {
        m_keyboard.perform(call);
        return true;
    }
    void LogiLedShutdown() override {}

private:
    keyboards::VirtualKeyboard m_keyboard;
};

} // namespace glimra::tools
