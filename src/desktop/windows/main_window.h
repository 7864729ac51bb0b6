#pragma once

#include "desktop/windows/addon_installer.h"
#include "desktop/windows/calibration_hint.h"
#include "desktop/windows/demonstration.h"
#include "desktop/windows/first_steps.h"
#include "desktop/windows/keyboard_view.h"
#include "desktop/windows/profile_chips.h"
#include "desktop/windows/status_line.h"
#include "desktop/windows/status_marks.h"

#include <memory>

namespace glimra::desktop {

/// What the main window shows besides outlets: the profiles, the marks of the machine, what goes on, the
/// first steps and the messages. Main thread.
class MainWindow {
public:
    struct Parts {
        /// As its Designer file has made it, with its two views in place.
        QMainWindow* window;
        KeyboardView& keyboard;
        InterfaceBinder& binder;
        AddonInstaller& addon;
        LoginEntry loginEntry;
        std::function<doctor::Findings()> lookAtDrivers;
        CalibrationPixels calibrationPixels;
        ProgramWatch::Parts watch;
        Demonstration::Parts demonstration;
        platform::UserDefaults& userDefaults;
    };

    /// Adds widgets and commands, so the window is bound afterwards.
    explicit MainWindow(const Parts& parts);

    Demonstration& demonstration() { return m_demonstration; }
    ProgramWatch& watch() { return m_watch; }
    ProfileNames& profileNames() { return m_names; }

private:
    void showProfileUntilLit(const lighting::LightingState& lighting);

    KeyboardView& m_keyboard;
    ProfileNames m_names;
    Demonstration m_demonstration;
    ProgramWatch m_watch;
    CalibrationHint m_calibration;
    FirstSteps m_firstSteps;
    StatusLine m_statusLine;
};

} // namespace glimra::desktop
