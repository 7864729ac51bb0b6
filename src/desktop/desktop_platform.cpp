#include "desktop/desktop_platform.h"

#include "app/built_bundle.h"
#include "desktop/keyboard_options.h"
#include "desktop/services/x11_display_sleep.h"
#include "desktop/settings/light_places.h"
#include "desktop/x11/pixels_per_point.h"
#include "desktop/x11/raise_window.h"
#include "platform/settings.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace glimra::desktop {

namespace {

/// The vendor's library, as far as it is known before anything is started.
std::string ledFramework(const std::vector<std::filesystem::path>& libraries) {
    const auto isThere = [](const std::filesystem::path& library) {
        std::error_code error;
        return std::filesystem::exists(library, error);
    };
    const auto found = std::ranges::find_if(libraries, isThere);
    return found == libraries.end() ? "none (only the driver sdk needs it)" : found->filename().string();
}

/// The display that is meant where no other is named.
std::string displayName(const Options& options) {
    const char* const ours = std::getenv("DISPLAY");
    return options.captureDisplay.empty() && ours != nullptr ? ours : options.captureDisplay;
}

} // namespace

DesktopPlatform::DesktopPlatform(const Options& options)
    : settings(settingsPath(options), systemLog),
      readerCapture(options.captureDisplay, options.capture,
                    [this](CaptureState) { runLoop.post([this] { sayCaptureWay(); }); }),
      mainCapture(options.captureDisplay, options.capture, runLoop),
      keyboard(keyboardOptions(options, {settings, systemLog}), runLoop),
      power(std::make_unique<X11DisplaySleep>(options.captureDisplay),
            [this](const std::string& note) { notes.push_back(note); }),
      workspace(options.captureDisplay, power, [this] { keyboard.resendAll(); }),
      childProcesses(
          voice,
          [display = displayName(options)](const std::string& name) { return raiseWindow(display, name); },
          [this](const std::string& sentence) { runLoop.post([this, sentence] { told.emit(sentence); }); }),
      m_hasWindows(!options.noWindow) {
    const int pixelsPerPoint = storedPixelsPerPoint({settings, systemLog});
    readerCapture.setPixelsPerPoint(pixelsPerPoint);
    mainCapture.setPixelsPerPoint(pixelsPerPoint);
    m_bundle = app::builtBundle();
    m_bundle.ledFrameworkVersion =
        ledFramework(keyboardOptions(options, {settings, systemLog}).drivers.sdkLibraries);
    using namespace platform::settings;
    if (!settings.get(kEndStaleEffects.key))
        settings.set(kEndStaleEffects.key, kEndStaleEffectsAtFirst);
}

void DesktopPlatform::calibrationSucceeded() {
    const int pixelsPerPoint = mainCapture.pixelsPerPoint();
    readerCapture.setPixelsPerPoint(pixelsPerPoint);
    settings.set(platform::settings::kScanPixelsPerPoint.key, static_cast<double>(pixelsPerPoint));
}

void DesktopPlatform::takeChangedSettings(bool driverIsGiven) {
    const int pixelsPerPoint = storedPixelsPerPoint({settings, systemLog});
    readerCapture.setPixelsPerPoint(pixelsPerPoint);
    mainCapture.setPixelsPerPoint(pixelsPerPoint);
    keyboard.placing().setAll(loadLightPlaces(settings));
    const std::string driver = keyboardOptions({}, {settings, systemLog}).driver;
    if (!driverIsGiven && driver != keyboard.chosen())
        keyboard.choose(driver);
}

void DesktopPlatform::chooseKeyboard(const std::string& driver) {
    settings.set(platform::settings::kLedDriver.key, driver);
    keyboard.choose(driver);
}

platform::Platform DesktopPlatform::platform() {
    platform::WindowSystem& windows =
        m_hasWindows ? static_cast<platform::WindowSystem&>(windowSystem) : noWindows;
    return {.application = lifecycle,
            .runLoop = runLoop,
            .readerThread = readerThread,
            .readerCapture = demonstration,
            .mainCapture = mainCapture,
            .ledDriver = keyboard,
            .userDefaults = settings,
            .workspace = workspace,
            .windowSystem = windows,
            .childProcesses = childProcesses,
            .sounds = sounds,
            .random = random,
            .systemLog = systemLog,
            .processActivity = power.processActivity(),
            .modifiers = modifiers,
            .bundle = m_bundle,
            .settingsFolder = settings.folder().toStdString()};
}

void DesktopPlatform::tellCaptureWay(std::function<void(std::string_view)> say) {
    m_sayCaptureWay = std::move(say);
    runLoop.post([this] { sayCaptureWay(); });
}

void DesktopPlatform::sayCaptureWay() {
    const std::string_view message = captureMessage(readerCapture.state());
    if (m_sayCaptureWay && message != std::exchange(m_saidOfCapture, message))
        m_sayCaptureWay(message);
}

} // namespace glimra::desktop
