#include "tools/replay/shown_keyboard.h"

namespace glimra::tools {

bool ShownKeyboard::LogiLedInit() {
    m_keyboard.LogiLedInit();
    return true;
}

bool ShownKeyboard::LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) {
    majorNumber = 9;
    minorNumber = 0;
    buildNumber = 0;
    return true;
}

bool ShownKeyboard::LogiLedSetTargetDevice(int targetDevice) {
    m_keyboard.LogiLedSetTargetDevice(targetDevice);
    return true;
}

bool ShownKeyboard::LogiLedSetLighting(int redPercentage, int greenPercentage, int bluePercentage) {
    m_keyboard.LogiLedSetLighting(redPercentage, greenPercentage, bluePercentage);
    return true;
}

bool ShownKeyboard::LogiLedSetLightingFromBitmap(platform::LedBitmapView bitmap) {
    m_keyboard.LogiLedSetLightingFromBitmap(bitmap);
    return true;
}

bool ShownKeyboard::LogiLedSetLightingForKeyWithKeyName(KeyName keyName, int redPercentage,
                                                        int greenPercentage, int bluePercentage) {
    m_keyboard.LogiLedSetLightingForKeyWithKeyName(keyName, redPercentage, greenPercentage, bluePercentage);
    return true;
}

bool ShownKeyboard::LogiLedFlashSingleKey(KeyName keyName, int redPercentage, int greenPercentage,
                                          int bluePercentage, int msDuration, int msInterval) {
    m_keyboard.LogiLedFlashSingleKey(keyName, redPercentage, greenPercentage, bluePercentage, msDuration,
                                     msInterval);
    return true;
}

bool ShownKeyboard::LogiLedPulseSingleKey(KeyName keyName, int startRedPercentage, int startGreenPercentage,
                                          int startBluePercentage, int finishRedPercentage,
                                          int finishGreenPercentage, int finishBluePercentage, int msDuration,
                                          bool isInfinite) {
    m_keyboard.LogiLedPulseSingleKey(keyName, startRedPercentage, startGreenPercentage, startBluePercentage,
                                     finishRedPercentage, finishGreenPercentage, finishBluePercentage,
                                     msDuration, isInfinite);
    return true;
}

bool ShownKeyboard::LogiLedStopEffectsOnKey(KeyName keyName) {
    m_keyboard.LogiLedStopEffectsOnKey(keyName);
    return true;
}

bool ShownKeyboard::LogiLedStopEffects() {
    m_keyboard.LogiLedStopEffects();
    return true;
}

} // namespace glimra::tools
