#include "trace/traced_led_driver.h"

namespace glimra::trace {

TracedLedDriver::TracedLedDriver(platform::LedDriver& driver, TraceWriter& writer)
    : m_driver(driver),
      m_writer(writer) {
}

bool TracedLedDriver::LogiLedInit() {
    m_writer.led("LogiLedInit");
    return m_driver.LogiLedInit();
}

bool TracedLedDriver::LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) {
    m_writer.led("LogiLedGetSdkVersion");
    return m_driver.LogiLedGetSdkVersion(majorNumber, minorNumber, buildNumber);
}

bool TracedLedDriver::LogiLedSetTargetDevice(int targetDevice) {
    m_writer.led("LogiLedSetTargetDevice", {targetDevice});
    return m_driver.LogiLedSetTargetDevice(targetDevice);
}

bool TracedLedDriver::LogiLedSetLighting(int redPercentage, int greenPercentage, int bluePercentage) {
    m_writer.led("LogiLedSetLighting", {redPercentage, greenPercentage, bluePercentage});
    return m_driver.LogiLedSetLighting(redPercentage, greenPercentage, bluePercentage);
}

bool TracedLedDriver::LogiLedSetLightingFromBitmap(platform::LedBitmapView bitmap) {
    m_writer.led("LogiLedSetLightingFromBitmap", {bitmap});
    return m_driver.LogiLedSetLightingFromBitmap(bitmap);
}

bool TracedLedDriver::LogiLedSetLightingForKeyWithKeyName(KeyName keyName, int redPercentage,
                                                          int greenPercentage, int bluePercentage) {
    m_writer.led("LogiLedSetLightingForKeyWithKeyName",
                 {keyName, redPercentage, greenPercentage, bluePercentage});
    return m_driver.LogiLedSetLightingForKeyWithKeyName(keyName, redPercentage, greenPercentage,
                                                        bluePercentage);
}

bool TracedLedDriver::LogiLedFlashSingleKey(KeyName keyName, int redPercentage, int greenPercentage,
                                            int bluePercentage, int msDuration, int msInterval) {
    m_writer.led("LogiLedFlashSingleKey",
                 {keyName, redPercentage, greenPercentage, bluePercentage, msDuration, msInterval});
    return m_driver.LogiLedFlashSingleKey(keyName, redPercentage, greenPercentage, bluePercentage, msDuration,
                                          msInterval);
}

bool TracedLedDriver::LogiLedPulseSingleKey(KeyName keyName, int startRedPercentage, int startGreenPercentage,
                                            int startBluePercentage, int finishRedPercentage,
                                            int finishGreenPercentage, int finishBluePercentage,
                                            int msDuration, bool isInfinite) {
    m_writer.led("LogiLedPulseSingleKey",
                 {keyName, startRedPercentage, startGreenPercentage, startBluePercentage, finishRedPercentage,
                  finishGreenPercentage, finishBluePercentage, msDuration, isInfinite});
    return m_driver.LogiLedPulseSingleKey(keyName, startRedPercentage, startGreenPercentage,
                                          startBluePercentage, finishRedPercentage, finishGreenPercentage,
                                          finishBluePercentage, msDuration, isInfinite);
}

bool TracedLedDriver::LogiLedStopEffectsOnKey(KeyName keyName) {
    m_writer.led("LogiLedStopEffectsOnKey", {keyName});
    return m_driver.LogiLedStopEffectsOnKey(keyName);
}

bool TracedLedDriver::LogiLedStopEffects() {
    m_writer.led("LogiLedStopEffects");
    return m_driver.LogiLedStopEffects();
}

void TracedLedDriver::LogiLedShutdown() {
    m_writer.led("LogiLedShutdown");
    m_driver.LogiLedShutdown();
}

} // namespace glimra::trace
