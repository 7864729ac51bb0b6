#pragma once

#include "platform/led_driver.h"
#include "trace/trace_writer.h"

namespace glimra::trace {

/// Writes each call and then passes it on, so that lines which the driver causes come after it. Returns the
/// driver's results.
class TracedLedDriver final : public platform::LedDriver {
public:
    TracedLedDriver(platform::LedDriver& driver, TraceWriter& writer) : m_driver(driver), m_writer(writer) {}

    bool LogiLedInit() override {
        m_writer.led("LogiLedInit");
        return m_driver.LogiLedInit();
    }
    bool LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) override {
        m_writer.led("LogiLedGetSdkVersion");
        return m_driver.LogiLedGetSdkVersion(majorNumber, minorNumber, buildNumber);
    }
    bool perform(const platform::LedCall& call) override {
        m_writer.led(call);
        return m_driver.perform(call);
    }
    void LogiLedShutdown() override {
        m_writer.led("LogiLedShutdown");
        m_driver.LogiLedShutdown();
    }

private:
    platform::LedDriver& m_driver;
    TraceWriter& m_writer;
};

} // namespace glimra::trace
