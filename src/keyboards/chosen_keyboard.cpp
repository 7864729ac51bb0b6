#include "keyboards/chosen_keyboard.h"

#include "keyboards/device/first_keyboard.h"

#include <system_error>
#include <utility>

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
    const DriverRow* const named = findDriver(wanted);
    bool isAsWanted = named != nullptr || wanted == kAutomaticDriver;
    const auto refuse = [&](std::string_view driver, const std::string& reason) {
        told.emit("Keyboard driver " + std::string(driver) + ": " + reason);
        isAsWanted &= driver != wanted;
    };
    if (!isAsWanted)
        refuse(wanted, "There is no such driver.");

    std::vector<std::unique_ptr<KeyboardDevice>> devices;
    for (const DriverRow* const row : candidates(wanted)) {
        if (row->start != nullptr) {
            const std::string reason = start(*row);
            if (reason.empty())
                return isAsWanted;
            refuse(row->name, reason);
        } else if (row->makeDevice != nullptr) {
            if (auto device = row->makeDevice(m_options.drivers))
                devices.push_back(std::move(device));
            else
                refuse(row->name, "This program was built without it.");
        }
    }
    const DriverRow& drawn = driverRows().back();
    const bool isOnlySearched = isAsWanted && named != nullptr && !devices.empty();
    description.set(std::string(isOnlySearched ? named->description : drawn.description));
    told.emit("Keyboard driver: " + std::string(isOnlySearched    ? named->name
                                                : devices.empty() ? drawn.name
                                                                  : kAutomaticDriver));
    const std::string problem = devices.empty() ? std::string{} : attach(std::move(devices));
    if (!problem.empty())
        refuse(wanted, problem);
    return isAsWanted;
}

std::string ChosenKeyboard::start(const DriverRow& row) {
    StartedLibrary library = row.start(m_options.drivers);
    if (library.driver == nullptr)
        return library.reason;
    m_library = std::move(library.driver);
    description.set(library.description);
    told.emit("Keyboard driver: " + std::string(row.name));
    return {};
}

std::string ChosenKeyboard::attach(std::vector<std::unique_ptr<KeyboardDevice>> devices) {
    m_attached = std::make_shared<const bool>();
    const auto report = [this, attached = std::weak_ptr(m_attached)](const DeviceEvent& event) {
        m_runLoop.post([this, attached, event] {
            if (!attached.expired())
                heed(event);
        });
    };
    try {
        m_drawn.attach(devices.size() == 1 ? std::move(devices.front())
                                           : std::make_unique<FirstKeyboard>(std::move(devices)),
                       report);
    } catch (const std::system_error& error) {
        return std::string("No thread for the keyboard: ") + error.what() + ".";
    }
    return {};
}

void ChosenKeyboard::letGo() {
    m_attached.reset();
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
