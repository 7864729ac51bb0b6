#pragma once

#include "desktop/loop/lifecycle.h"
#include "desktop/loop/qt_run_loop.h"
#include "desktop/loop/thread_worker_loop.h"
#include "desktop/no_windows.h"
#include "desktop/options.h"
#include "desktop/services/desktop_workspace.h"
#include "desktop/services/linux_commands.h"
#include "desktop/services/power_services.h"
#include "desktop/services/system_services.h"
#include "desktop/services/theme_sounds.h"
#include "desktop/settings/settings_file.h"
#include "desktop/windows/qt_window_system.h"
#include "desktop/x11/resting_capture.h"
#include "desktop/x11/screen_capture.h"
#include "keyboards/chosen_keyboard.h"
#include "platform/controls.h"
#include "platform/platform.h"
#include "screenlink/demonstration.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::desktop {

/// The platform on a Linux desktop. Main thread; needs a QApplication or, to run without windows, a
/// QCoreApplication.
struct DesktopPlatform {
    explicit DesktopPlatform(const Options& options);

    /// The part that the application sees.
    platform::Platform platform();

    /// Changes the keyboard driver, now and for the next start.
    void chooseKeyboard(const std::string& driver);
    /// Takes what was changed in the settings from outside: the driver, unless the command line gave one, and
    /// the pixels for a point.
    void takeChangedSettings(bool driverIsGiven);
    /// How many real pixels for a point the next calibration looks at. The reader follows when it succeeds.
    int calibrationPixels() const { return mainCapture.pixelsPerPoint(); }
    void setCalibrationPixels(int pixelsPerPoint) { mainCapture.setPixelsPerPoint(pixelsPerPoint); }
    void calibrationSucceeded();
    void calibrationFailed() { setCalibrationPixels(readerCapture.pixelsPerPoint()); }
    /// Calls `say` with a message about how the strip is captured: soon for the present state, and again
    /// whenever the message changes.
    void tellCaptureWay(std::function<void(std::string_view)> say);

    StderrSystemLog systemLog;
    SettingsFile settings;
    QtRunLoop runLoop;
    Lifecycle lifecycle{runLoop};
    /// Used by the reader's thread only; its state may be read on any thread.
    X11ScreenCapture readerCapture;
    /// What the reader is given: the same, or the demonstration's strip.
    screenlink::DemonstrationCapture demonstration{readerCapture, runLoop};
    RestingCapture mainCapture;
    ThreadWorkerLoop readerThread;
    keyboards::ChosenKeyboard keyboard;
    /// Sentences for the user about what failed.
    platform::Signal<std::string_view> told;
    /// What the machine's services cannot do here, for debugging.
    std::vector<std::string> notes;
    PowerServices power;
    DesktopWorkspace workspace;
    QtWindowSystem windowSystem{settings, runLoop};
    NoWindows noWindows{told};
    /// Speaks and beeps, one thing at a time. The queue is short so that nothing outdated is played.
    BackgroundWorker voice{2};
    LinuxCommands childProcesses;
    ThemeSounds sounds{voice};
    RandomNumbers random;
    Modifiers modifiers;

private:
    void sayCaptureWay();

    const bool m_hasWindows;

    platform::Bundle m_bundle;
    std::function<void(std::string_view)> m_sayCaptureWay;
    std::string_view m_saidOfCapture;
};

} // namespace glimra::desktop
