#pragma once

#include "app/app_delegate.h"
#include "desktop/services/login_entry.h"
#include "desktop/windows/addon_installer.h"
#include "desktop/windows/choice_menu.h"
#include "desktop/windows/interface_binder.h"
#include "desktop/windows/machine_check.h"
#include "desktop/windows/main_window.h"
#include "desktop/windows/painter_guard.h"
#include "desktop/windows/painter_window.h"
#include "desktop/windows/place_lights_window.h"
#include "desktop/windows/qt_window_system.h"
#include "desktop/windows/questions.h"
#include "keyboards/virtual_keyboard.h"

#include <QMainWindow>

#include <memory>

namespace glimra::desktop {

/// All windows of the application, bound to it. Main thread; no control may change after they are gone.
class Windows {
public:
    struct Parts {
        app::AppDelegate& delegate;
        QtWindowSystem& windowSystem;
        platform::RunLoop& runLoop;
        platform::UserDefaults& userDefaults;
        /// What the live view shows, and the clock that it runs by.
        keyboards::VirtualKeyboard& keyboard;
        std::function<keyboards::Time()> now;
        /// Asks the application to quit, whatever is unsaved.
        std::function<void()> quit;
        /// What lights up, in plain words.
        platform::Property<std::string>& keyboardName;
        Choice keyboardChoice;
        PlaceLightsWindow::Parts placeLights;
        /// As the desktop, dark or light.
        Choice appearance;
        /// For a doctor who looks at what this program uses.
        QStringList doctorArguments;
        /// What could be lit, in the doctor's words.
        std::function<doctor::Findings()> lookAtDrivers;
        /// How the strip is read.
        std::function<CaptureState()> captureState;
        screenlink::DemonstrationCapture& demonstration;
        /// Puts a token into the message queue, where a recording sees it.
        std::function<void(std::string_view)> sendToken;
        CalibrationPixels calibrationPixels;
        LoginEntry loginEntry;
    };

    explicit Windows(const Parts& parts);
    ~Windows();

    InterfaceBinder& binder() { return m_binder; }
    Demonstration& demonstration() { return m_main->demonstration(); }
    ProgramWatch& watch() { return m_main->watch(); }
    ProfileNames& profileNames() { return m_main->profileNames(); }
    /// The user wants to quit.
    void quit() { m_guard->quit(); }
    /// Calls `launch`, which shows the main window, but leaves it in the tray or, until there is one,
    /// minimized.
    void launchHidden(const std::function<void()>& launch);
    /// A window by its outlet's name.
    QWidget* window(const std::string& outlet) const;

private:
    template <class Design, class Widget>
    Widget* add(QWidget* parent = nullptr);
    void buildMainWindow();
    void furnishMainWindow();
    void buildProgrammer();
    void buildOthers();
    void furnishMenus();
    void showShortcuts();
    bool staysInTray() const;
    void bindAll();
    void hideOnceThereIsATray(int tries);
    void sayWhatIsIgnored(const app::ActionRow& action);

    Parts m_parts;
    InterfaceBinder m_binder;
    std::vector<std::unique_ptr<QWidget>> m_windows;
    QMainWindow* m_mainWindow = nullptr;
    KeyboardView* m_keyboardView = nullptr;
    QWidget* m_programmer = nullptr;
    std::unique_ptr<AddonInstaller> m_addonInstaller;
    std::unique_ptr<PainterGuard> m_guard;
    std::unique_ptr<PainterWindow> m_painter;
    std::unique_ptr<Questions> m_questions;
    std::unique_ptr<MainWindow> m_main;
    std::unique_ptr<MachineCheck> m_machineCheck;
    std::unique_ptr<TextWindow> m_shortcuts;
    std::unique_ptr<PlaceLightsWindow> m_placeLights;
};

} // namespace glimra::desktop
