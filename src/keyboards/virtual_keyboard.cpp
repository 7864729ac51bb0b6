#include "keyboards/virtual_keyboard.h"

#include "platform/monotonic_clock.h"

#include <utility>

namespace glimra::keyboards {

using std::chrono::milliseconds;

VirtualKeyboard::VirtualKeyboard(std::function<Time()> now) : m_now(std::move(now)) {
}

template <class Change>
bool VirtualKeyboard::take(Change change) {
    if (!m_open || !change(m_model))
        return false;
    if (m_writer)
        m_writer->show(m_model);
    changed.emit();
    return true;
}

void VirtualKeyboard::attach(std::unique_ptr<KeyboardDevice> device, DeviceWriter::Report report) {
    detach();
    m_writer = std::make_unique<DeviceWriter>(std::move(device), std::move(report), m_detached);
    if (m_open)
        m_writer->show(m_model);
}

void VirtualKeyboard::detach() {
    if (!m_writer)
        return;
    m_detached = m_writer->leave();
    m_writer.reset();
}

void VirtualKeyboard::resendAll() {
    if (m_writer)
        m_writer->resendAll();
}

bool VirtualKeyboard::LogiLedInit() {
    m_open = true;
    return true;
}

bool VirtualKeyboard::LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) {
    if (!m_open)
        return false;
    majorNumber = 9;
    minorNumber = 0;
    buildNumber = 0;
    return true;
}

bool VirtualKeyboard::LogiLedSetTargetDevice(int targetDevice) {
    if (!m_open)
        return false;
    m_model.setTargetDevice(targetDevice);
    return true;
}

bool VirtualKeyboard::LogiLedSetLighting(int redPercentage, int greenPercentage, int bluePercentage) {
    return take([&](KeyboardModel& model) {
        model.setLighting({redPercentage, greenPercentage, bluePercentage});
        return true;
    });
}

bool VirtualKeyboard::LogiLedSetLightingFromBitmap(platform::LedBitmapView bitmap) {
    return take([&](KeyboardModel& model) {
        model.setBitmap(bitmap);
        return true;
    });
}

bool VirtualKeyboard::LogiLedSetLightingForKeyWithKeyName(KeyName keyName, int redPercentage,
                                                          int greenPercentage, int bluePercentage) {
    return take([&](KeyboardModel& model) {
        return model.setKey(keyName, {redPercentage, greenPercentage, bluePercentage});
    });
}

bool VirtualKeyboard::LogiLedFlashSingleKey(KeyName keyName, int redPercentage, int greenPercentage,
                                            int bluePercentage, int msDuration, int msInterval) {
    return take([&](KeyboardModel& model) {
        return model.flash(keyName, {redPercentage, greenPercentage, bluePercentage},
                           milliseconds(msDuration), milliseconds(msInterval), m_now());
    });
}

bool VirtualKeyboard::LogiLedPulseSingleKey(KeyName keyName, int startRedPercentage, int startGreenPercentage,
                                            int startBluePercentage, int finishRedPercentage,
                                            int finishGreenPercentage, int finishBluePercentage,
                                            int msDuration, bool isInfinite) {
    return take([&](KeyboardModel& model) {
        return model.pulse(keyName, {startRedPercentage, startGreenPercentage, startBluePercentage},
                           {finishRedPercentage, finishGreenPercentage, finishBluePercentage},
                           milliseconds(msDuration), isInfinite ? Repeat::UntilStopped : Repeat::Once,
                           m_now());
    });
}

bool VirtualKeyboard::LogiLedStopEffectsOnKey(KeyName keyName) {
    return take([&](KeyboardModel& model) { return model.stopEffectsOnKey(keyName); });
}

bool VirtualKeyboard::LogiLedStopEffects() {
    return take([](KeyboardModel& model) {
        model.stopEffects();
        return true;
    });
}

void VirtualKeyboard::LogiLedShutdown() {
    // First of all: the keyboard is handed back as it was found, it does not go dark.
    detach();
    if (m_detached)
        waitForInput(m_detached->fd(), -1, platform::monotonicNow() + DeviceWriter::kStopLimit);
    take([](KeyboardModel& model) {
        model = {};
        return true;
    });
    m_open = false;
}

} // namespace glimra::keyboards
