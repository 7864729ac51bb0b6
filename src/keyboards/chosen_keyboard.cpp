#include "keyboards/chosen_keyboard.h"

#include "keyboards/openrgb/connection.h"
#include "keyboards/usb/usb_keyboard.h"

#include <system_error>
#include <utility>

namespace glimra::keyboards {

ChosenKeyboard::ChosenKeyboard(Options options, platform::RunLoop& runLoop)
    : m_options(std::move(options)),
      m_runLoop(runLoop),
      m_drawn([&runLoop] { return runLoop.now(); }) {
}

ChosenKeyboard::~ChosenKeyboard() = default;

void ChosenKeyboard::choose(std::string_view driver) {
    m_options.driver = driver;
    if (!m_open)
        return;
    letGo();
    take();
    if (m_sdk)
        m_drawn.model().repeatOn(*m_sdk);
}

void ChosenKeyboard::resendAll() {
    m_drawn.resendAll();
    if (m_sdk)
        m_drawn.model().repeatOn(*m_sdk);
}

bool ChosenKeyboard::take() {
    const std::array<DriverRow, kDriverNames.size()> rows{{
        {kDriverNames[0].name, [this](Demand) { return takeSdk(); }},
        {kDriverNames[1].name, [this](Demand demand) { return takeUsb(demand); }},
        {kDriverNames[2].name, [this](Demand demand) { return takeOpenRgb(demand); }},
        {kDriverNames[3].name,
         [this](Demand) {
             description.set("keyboard in this window");
             return std::string{};
         }},
    }};
    const DriverChoice choice = chooseDriver(rows, m_options.driver);
    for (const std::string& line : describe(choice))
        told.emit(line);
    if (m_options.driver == kAutomaticDriver && choice.driver == "virtual")
        m_nextLook = m_runLoop.after(m_options.pauseBetweenLooks, [this] { lookAgain(); });
    return m_options.driver == kAutomaticDriver || choice.driver == m_options.driver;
}

void ChosenKeyboard::lookAgain() {
    if (whyNoUsbKeyboard(m_options.hidFolders).empty() || openrgb::mayListen(m_options.openRgb.server)) {
        m_nextLook.reset();
        take();
    } else {
        m_nextLook = m_runLoop.after(m_options.pauseBetweenLooks, [this] { lookAgain(); });
    }
}

void ChosenKeyboard::stopLooking() {
    if (m_nextLook)
        m_runLoop.cancel(*m_nextLook);
    m_nextLook.reset();
}

std::string ChosenKeyboard::takeSdk() {
    auto sdk = std::make_unique<SdkDriver>(m_options.sdkLibraries);
    if (!sdk->LogiLedInit())
        return sdk->reason();
    m_sdk = std::move(sdk);
    description.set("keyboard of " + m_sdk->library().filename().string());
    return {};
}

std::string ChosenKeyboard::takeUsb(Demand demand) {
    std::string reason = demand == Demand::Anyway ? std::string{} : whyNoUsbKeyboard(m_options.hidFolders);
    if (!reason.empty())
        return reason;
    auto device = makeUsbKeyboard(m_options.hidFolders);
    return device ? attach(std::move(device), "no keyboard on USB yet")
                  : "This program was built without the USB keyboards.";
}

std::string ChosenKeyboard::takeOpenRgb(Demand demand) {
    const openrgb::ServerAddress& server = m_options.openRgb.server;
    if (demand == Demand::IfPresent && !m_options.openRgbIsNamed && !openrgb::mayListen(server))
        return "There is no OpenRGB server on " + server.host + ":" + std::to_string(server.port) + ".";
    return attach(std::make_unique<openrgb::OpenRgbDevice>(m_options.openRgb),
                  "no keyboard from the OpenRGB server yet");
}

std::string ChosenKeyboard::attach(std::unique_ptr<KeyboardDevice> device, const std::string& search) {
    const std::weak_ptr<int> present = m_generation;
    try {
        m_drawn.attach(std::move(device),
                       [this, present, generation = *m_generation](const DeviceEvent& event) {
                           m_runLoop.post([this, present, generation, event] {
                               const std::shared_ptr<int> current = present.lock();
                               if (current && *current == generation)
                                   heed(event);
                           });
                       });
    } catch (const std::system_error& error) {
        return std::string("No thread for the keyboard: ") + error.what() + ".";
    }
    description.set(search);
    return {};
}

void ChosenKeyboard::letGo() {
    ++*m_generation;
    stopLooking();
    m_drawn.detach();
    if (m_sdk)
        m_sdk->LogiLedShutdown();
    m_sdk.reset();
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
    return m_sdk ? m_sdk->LogiLedGetSdkVersion(majorNumber, minorNumber, buildNumber) : drawn;
}

bool ChosenKeyboard::perform(const platform::LedCall& call) {
    const bool drawn = m_drawn.perform(call);
    return m_sdk ? m_sdk->perform(call) : drawn;
}

void ChosenKeyboard::LogiLedShutdown() {
    ++*m_generation;
    stopLooking();
    m_open = false;
    if (m_sdk)
        m_sdk->LogiLedShutdown();
    m_sdk.reset();
    m_drawn.LogiLedShutdown();
}

} // namespace glimra::keyboards
