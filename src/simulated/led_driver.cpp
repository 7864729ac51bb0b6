#include "simulated/led_driver.h"

namespace glimra::simulated {

bool RecordingLedDriver::keep(std::string_view function, std::initializer_list<std::int64_t> arguments) {
    m_calls.push_back({function, arguments, {}});
    return true;
}

bool RecordingLedDriver::LogiLedInit() {
    return keep("LogiLedInit");
}

bool RecordingLedDriver::LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) {
    majorNumber = 9;
    minorNumber = 0;
    buildNumber = 0;
    return keep("LogiLedGetSdkVersion");
}

bool RecordingLedDriver::LogiLedSetTargetDevice(int targetDevice) {
    return keep("LogiLedSetTargetDevice", {targetDevice});
}

bool RecordingLedDriver::LogiLedSetLighting(int redPercentage, int greenPercentage, int bluePercentage) {
    return keep("LogiLedSetLighting", {redPercentage, greenPercentage, bluePercentage});
}

bool RecordingLedDriver::LogiLedSetLightingFromBitmap(platform::LedBitmapView bitmap) {
    m_calls.push_back({"LogiLedSetLightingFromBitmap", {}, {bitmap.begin(), bitmap.end()}});
    return true;
}

bool RecordingLedDriver::LogiLedSetLightingForKeyWithKeyName(platform::KeyName keyName, int redPercentage,
                                                             int greenPercentage, int bluePercentage) {
    return keep("LogiLedSetLightingForKeyWithKeyName",
                {keyName, redPercentage, greenPercentage, bluePercentage});
}

bool RecordingLedDriver::LogiLedFlashSingleKey(platform::KeyName keyName, int redPercentage,
                                               int greenPercentage, int bluePercentage, int msDuration,
                                               int msInterval) {
    return keep("LogiLedFlashSingleKey",
                {keyName, redPercentage, greenPercentage, bluePercentage, msDuration, msInterval});
}

bool RecordingLedDriver::LogiLedPulseSingleKey(platform::KeyName keyName, int startRedPercentage,
                                               int startGreenPercentage, int startBluePercentage,
                                               int finishRedPercentage, int finishGreenPercentage,
                                               int finishBluePercentage, int msDuration, bool isInfinite) {
    return keep("LogiLedPulseSingleKey",
                {keyName, startRedPercentage, startGreenPercentage, startBluePercentage, finishRedPercentage,
                 finishGreenPercentage, finishBluePercentage, msDuration, isInfinite ? 1 : 0});
}

bool RecordingLedDriver::LogiLedStopEffectsOnKey(platform::KeyName keyName) {
    return keep("LogiLedStopEffectsOnKey", {keyName});
}

bool RecordingLedDriver::LogiLedStopEffects() {
    return keep("LogiLedStopEffects");
}

void RecordingLedDriver::LogiLedShutdown() {
    keep("LogiLedShutdown");
}

} // namespace glimra::simulated
