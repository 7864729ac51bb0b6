#pragma once

#include "platform/led_driver.h"
#include "platform/system_services.h"

#include <string>
#include <vector>

namespace glimra::tests {

/// Remembers every call as text: the function's name without "LogiLed", then its arguments but for a bitmap.
class FakeDriver final : public platform::LedDriver {
public:
    std::vector<std::string> calls;

    /// The calls since the last time, as one text a line.
    std::vector<std::string> take() {
        std::vector<std::string> taken;
        taken.swap(calls);
        return taken;
    }

    bool LogiLedInit() override { return add("Init"); }
    bool LogiLedGetSdkVersion(int& a, int& b, int& c) override {
        a = b = c = 0;
        return add("GetSdkVersion");
    }
    bool perform(const platform::LedCall& call) override {
        return std::visit(
            [this](const auto& one) {
                std::string text(one.kName.substr(std::string_view("LogiLed").size()));
                std::apply([&](auto... each) { (append(text, each), ...); }, one.arguments());
                return add(text);
            },
            call);
    }
    void LogiLedShutdown() override { add("Shutdown"); }

private:
    void append(std::string&, platform::LedBitmapView) {}
    void append(std::string& text, bool value) { text += value ? " true" : " false"; }
    template <class Number>
    void append(std::string& text, Number value) {
        text += ' ' + std::to_string(value);
    }
    bool add(const std::string& call) {
        calls.push_back(call);
        return true;
    }
};

/// Hands out the same number again and again.
class FixedRandom final : public platform::RandomNumbers {
public:
    std::uint32_t value = 0;
    std::uint32_t uniform(std::uint32_t upperBound) override { return value % upperBound; }
};

} // namespace glimra::tests
