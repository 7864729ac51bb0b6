#include "desktop/user_interface.h"

#include "desktop/doctor/checks.h"
#include "desktop/keyboard_options.h"
#include "desktop/services/xdg_folders.h"
#include "desktop/windows/theme.h"
#include "desktop/windows/tray.h"
#include "desktop/windows/windows.h"
#include "platform/monotonic_clock.h"

#include <QApplication>

namespace glimra::desktop {

namespace {

class WindowInterface final : public UserInterface {
public:
    explicit WindowInterface(const Parts& parts)
        : m_machine(parts.machine),
          m_delegate(parts.delegate),
          m_isHidden(parts.options.hidden),
          m_windows(windowParts(parts)),
          m_tray(m_windows.binder(), m_delegate, [this] { m_windows.quit(); }) {
        m_theme.choose(appearance());
    }

    InterfaceBinder& binder() override { return m_windows.binder(); }
    void launch(const std::function<void()>& launch) override {
        if (m_isHidden)
            m_windows.launchHidden(launch);
        else
            launch();
    }
    bool bringToFront() override {
        m_machine.runLoop.post([this] { m_delegate.outlets().mainWindow.bringToFront(); });
        return true;
    }
    void takeChangedSettings() override {
        m_theme.choose(appearance());
        m_windows.profileNames().changed.emit();
    }
    const StatusSnapshot& look() override {
        m_windows.watch().look();
        return m_windows.watch().snapshot();
    }

private:
    Windows::Parts windowParts(const Parts& parts);
    std::string appearance() {
        return platform::SettingsReader{m_machine.settings, m_machine.systemLog}.value(
            platform::settings::kAppearance);
    }
    void chooseAppearance(const std::string& name) {
        m_machine.settings.set(platform::settings::kAppearance.key, name);
        m_theme.choose(name);
    }

    DesktopPlatform& m_machine;
    app::AppDelegate& m_delegate;
    const bool m_isHidden;
    DesktopTheme m_theme;
    Windows m_windows;
    Tray m_tray;
};

Windows::Parts WindowInterface::windowParts(const Parts& parts) {
    return {
        .delegate = m_delegate,
        .windowSystem = m_machine.windowSystem,
        .runLoop = m_machine.runLoop,
        .userDefaults = m_machine.settings,
        .keyboard = m_machine.keyboard.drawn(),
        .now = platform::monotonicNow,
        .quit = parts.quit,
        .keyboardName = m_machine.keyboard.description,
        .keyboardChoice = {[this] { return m_machine.keyboard.chosen(); },
                           [this](const std::string& name) { m_machine.chooseKeyboard(name); }},
        .placeLights = {m_machine.keyboard.placing(), m_machine.settings,
                        [this] { m_machine.keyboard.resendAll(); }},
        .appearance = {[this] { return appearance(); },
                       [this](const std::string& name) { chooseAppearance(name); }},
        .doctorArguments = doctorArguments(parts.options),
        .lookAtDrivers =
            [drivers = keyboardOptions(parts.options, {m_machine.settings, m_machine.systemLog}).drivers] {
                return doctor::lookAtKeyboards(drivers);
            },
        .captureState = [this] { return m_machine.readerCapture.state(); },
        .demonstration = m_machine.demonstration,
        .sendToken = parts.sendToken,
        .calibrationPixels = {[this] { return m_machine.calibrationPixels(); },
                              [this](int pixels) { m_machine.setCalibrationPixels(pixels); }},
        .loginEntry = {configurationFolder(), QCoreApplication::applicationFilePath().toStdString()}};
}

} // namespace

std::unique_ptr<UserInterface> makeWindows(const UserInterface::Parts& parts) {
    return std::make_unique<WindowInterface>(parts);
}

} // namespace glimra::desktop
