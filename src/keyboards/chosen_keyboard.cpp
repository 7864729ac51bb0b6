#include "keyboards/chosen_keyboard.h"

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

namespace glimra::keyboards {

ChosenKeyboard::ChosenKeyboard(Options options, platform::RunLoop& runLoop)
    : m_options(std::move(options)),
      m_runLoop(runLoop),
      m_drawn([&runLoop] { return runLoop.now(); }) {
}

void ChosenKeyboard::choose(std::string_view driver) {
    m_options.driver = driver;
    if (!m_open)
        return;
    letGo();
    take();
    if (m_library)
        m_drawn.model().repeatOn(*m_library);
}

void ChosenKeyboard::resendAll() {
    m_drawn.resendAll();
    if (m_library)
        m_drawn.model().repeatOn(*m_library);
}

bool ChosenKeyboard::take() {
    const std::string& wanted = m_options.driver;
    const bool isAutomatic = wanted == kAutomaticDriver;
    const DriverRow* const named = findDriver(wanted);
    std::vector<std::string> lines;
    const DriverRow* taken = nullptr;
    const auto tryToTake = [&](const DriverRow& row, Demand demand) {
        const std::string reason = take(row, demand);
        if (reason.empty())
            taken = &row;
        else
            lines.push_back("Keyboard driver " + std::string(row.name) + ": " + reason);
    };

    if (named != nullptr)
        tryToTake(*named, Demand::Anyway);
    else if (!isAutomatic)
        lines.push_back("Keyboard driver " + wanted + ": There is no such driver.");
    for (const DriverRow& row : driverRows())
        if (taken == nullptr && &row != named)
            tryToTake(row, Demand::IfPresent);
    lines.push_back("Keyboard driver: " + std::string(taken->name));
    for (const std::string& line : lines)
        told.emit(line);
    if (isAutomatic && taken == &driverRows().back())
        lookAgainLater();
    return isAutomatic || taken == named;
}

std::string ChosenKeyboard::take(const DriverRow& row, Demand demand) {
    TakenDriver taken = row.take(m_options.drivers, demand);
    if (taken.device)
        taken.reason = attach(std::move(taken.device));
    if (!taken.reason.empty())
        return taken.reason;
    m_library = std::move(taken.library);
    description.set(taken.description);
    return {};
}

void ChosenKeyboard::lookAgain() {
    m_nextLook.reset();
    const auto hasSomethingToLight = [this](const DriverRow& row) {
        return row.look != nullptr && row.look(m_options.drivers).empty();
    };
    if (std::ranges::any_of(driverRows(), hasSomethingToLight))
        take();
    else
        lookAgainLater();
}

void ChosenKeyboard::lookAgainLater() {
    m_nextLook = m_runLoop.after(m_options.pauseBetweenLooks, [this] { lookAgain(); });
}

std::string ChosenKeyboard::attach(std::unique_ptr<KeyboardDevice> device) {
    m_attached = std::make_shared<const bool>();
    const auto report = [this, attached = std::weak_ptr(m_attached)](const DeviceEvent& event) {
        m_runLoop.post([this, attached, event] {
            if (!attached.expired())
                heed(event);
        });
    };
    try {
        m_drawn.attach(std::move(device), report);
    } catch (const std::system_error& error) {
        return std::string("No thread for the keyboard: ") + error.what() + ".";
    }
    return {};
}

void ChosenKeyboard::letGo() {
    m_attached.reset();
    if (m_nextLook)
        m_runLoop.cancel(*m_nextLook);
    m_nextLook.reset();
    m_drawn.detach();
    if (m_library)
        m_library->LogiLedShutdown();
    m_library.reset();
}

void ChosenKeyboard::heed(const DeviceEvent& event) {
    told.emit(event.text);
    if (event.kind == DeviceEvent::Kind::Found)
        description.set(event.name);
    else if (event.kind == DeviceEvent::Kind::Lost)
        description.set("keyboard lost, looking for it");
}

bool ChosenKeyboard::LogiLedInit() {
    if (m_open)
        return true;
    m_open = m_drawn.LogiLedInit();
    return take();
}

bool ChosenKeyboard::LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) {
    const bool drawn = m_drawn.LogiLedGetSdkVersion(majorNumber, minorNumber, buildNumber);
    return m_library ? m_library->LogiLedGetSdkVersion(majorNumber, minorNumber, buildNumber) : drawn;
}

bool ChosenKeyboard::perform(const platform::LedCall& call) {
    const bool drawn = m_drawn.perform(call);
    return m_library ? m_library->perform(call) : drawn;
}

void ChosenKeyboard::LogiLedShutdown() {
    letGo();
    m_open = false;
    m_drawn.LogiLedShutdown();
}

} // namespace glimra::keyboards
