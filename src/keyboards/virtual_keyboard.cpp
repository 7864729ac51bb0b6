#include "keyboards/virtual_keyboard.h"

#include "platform/monotonic_clock.h"

#include <utility>

namespace glimra::keyboards {

VirtualKeyboard::VirtualKeyboard(std::function<Time()> now) : m_now(std::move(now)) {
}

void VirtualKeyboard::show() {
    m_hasShown = true;
    if (m_writer)
        m_writer->show(m_model);
    changed.emit();
}

void VirtualKeyboard::attach(std::unique_ptr<KeyboardDevice> device, DeviceWriter::Report report) {
    detach();
    m_writer = std::make_unique<DeviceWriter>(std::move(device), std::move(report), m_detached);
    if (m_hasShown)
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

bool VirtualKeyboard::perform(const platform::LedCall& call) {
    if (!m_open || !m_model.perform(call, m_now()))
        return false;
    if (!std::holds_alternative<platform::SetTargetDevice>(call))
        show();
    return true;
}

void VirtualKeyboard::LogiLedShutdown() {
    // The real keyboard is handed back before the model goes dark, so that it never shows the dark.
    detach();
    if (m_detached)
        waitForInput(m_detached->fd(), -1, platform::monotonicNow() + DeviceWriter::kStopLimit);
    if (!m_open)
        return;
    m_open = false;
    m_hasShown = false;
    m_model = {};
    changed.emit();
}

} // namespace glimra::keyboards
