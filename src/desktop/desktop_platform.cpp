#include "desktop/desktop_platform.h"

#include "app/built_bundle.h"
#include "desktop/keyboard_options.h"
#include "desktop/services/x11_display_sleep.h"
#include "desktop/x11/raise_window.h"
#include "platform/settings.h"

#include <utility>

namespace glimra::desktop {

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
          [display = options.captureDisplay](const std::string& name) { return raiseWindow(display, name); },
          [this](const std::string& sentence) { runLoop.post([this, sentence] { told.emit(sentence); }); }) {
    using namespace platform::settings;
    if (!settings.get(kEndStaleEffects.key))
        settings.set(kEndStaleEffects.key, kEndStaleEffectsAtFirst);
}

void DesktopPlatform::chooseKeyboard(const std::string& driver) {
    settings.set(platform::settings::kLedDriver.key, driver);
    keyboard.choose(driver);
}

platform::Platform DesktopPlatform::platform() {
    return {.application = lifecycle,
            .runLoop = runLoop,
            .readerThread = readerThread,
            .readerCapture = readerCapture,
            .mainCapture = mainCapture,
            .ledDriver = keyboard,
            .userDefaults = settings,
            .workspace = workspace,
            .windowSystem = windowSystem,
            .childProcesses = childProcesses,
            .sounds = sounds,
            .random = random,
            .systemLog = systemLog,
            .processActivity = power.processActivity(),
            .modifiers = modifiers,
            .bundle = app::builtBundle(),
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
