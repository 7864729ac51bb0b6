// Stands in for the vendor's library: the same functions, which write down how they were called. Variants by
// definitions at build time: FAKE_SDK_REFUSES (does not start), FAKE_SDK_LACKS_PULSE (a function is missing).

#include <string>

namespace {

std::string calls;

template <class... Numbers>
bool record(const char* name, Numbers... numbers) {
    calls += name;
    ((calls += ' ' + std::to_string(numbers)), ...);
    calls += '\n';
    return true;
}

} // namespace

extern "C" {

/// What was called since the last time this was asked, a call to a line.
const char* fakeSdkTakeCalls() {
    static std::string taken;
    taken.clear();
    taken.swap(calls);
    return taken.c_str();
}

bool LogiLedInit() {
    record("Init");
#ifdef FAKE_SDK_REFUSES
    return false;
#else
    return true;
#endif
}

bool LogiLedGetSdkVersion(int* majorNumber, int* minorNumber, int* buildNumber) {
    *majorNumber = 9;
    *minorNumber = 2;
    *buildNumber = 65;
    return true;
}

bool LogiLedSetTargetDevice(int targetDevice) {
    return record("SetTargetDevice", targetDevice);
}

bool LogiLedSetLighting(int red, int green, int blue) {
    return record("SetLighting", red, green, blue);
}

bool LogiLedSetLightingFromBitmap(unsigned char* bitmap) {
    record("SetLightingFromBitmap", bitmap[0], bitmap[1], bitmap[503]);
    bitmap[0] = 99;
    return true;
}

bool LogiLedSetLightingForKeyWithKeyName(int keyName, int red, int green, int blue) {
    return record("SetLightingForKeyWithKeyName", keyName, red, green, blue);
}

bool LogiLedFlashSingleKey(int keyName, int red, int green, int blue, int msDuration, int msInterval) {
    return record("FlashSingleKey", keyName, red, green, blue, msDuration, msInterval);
}

#ifndef FAKE_SDK_LACKS_PULSE
bool LogiLedPulseSingleKey(int keyName, int startRed, int startGreen, int startBlue, int finishRed,
                           int finishGreen, int finishBlue, int msDuration, bool isInfinite) {
    return record("PulseSingleKey", keyName, startRed, startGreen, startBlue, finishRed, finishGreen,
                  finishBlue, msDuration, isInfinite);
}
#endif

bool LogiLedStopEffectsOnKey(int keyName) {
    record("StopEffectsOnKey", keyName);
    return keyName != 0;
}

bool LogiLedStopEffects() {
    return record("StopEffects");
}

void LogiLedShutdown() {
    record("Shutdown");
}

} // extern "C"
