#pragma once

#include "app/app_delegate.h"
#include "desktop/windows/interface_binder.h"
#include "desktop/windows/program_watch.h"
#include "desktop/windows/quiet_button.h"

#include <functional>

namespace glimra::desktop {

/// How many real pixels for a point a calibration looks at, 1 or 2.
struct CalibrationPixels {
    std::function<int()> get;
    std::function<void(int)> set;
};

/// A panel of the main window that goes with a calibration: how long it goes on looking, what to do in the
/// game, and Cancel; then how it ended, until it is closed or the next one begins. A strip that is too wide
/// can be looked for at half its width.
class CalibrationHint {
public:
    struct Parts {
        QWidget* mainWindow;
        app::AppDelegate& delegate;
        InterfaceBinder& binder;
        ProgramWatch& watch;
        CalibrationPixels pixels;
        std::function<platform::Time()> now;
    };

    enum class State { None, Running, Found, Failed, Canceled };

    /// Sets the panel's commands.
    explicit CalibrationHint(Parts parts);

    /// Calibrates without asking whether it is meant.
    void calibrate();
    State state() const { return m_state; }
    /// Of the search that runs; 0 at its end.
    int secondsLeft() const;

    /// The state, or the time that is left, has changed.
    platform::Signal<> changed;

private:
    void noteBeginning(const app::ActionRow& action);
    void noteEnd();
    void calibrateOtherwise();
    void become(State state);
    void show();
    QString text() const;
    QWidget* widget(const char* name) const { return m_parts.mainWindow->findChild<QWidget*>(name); }

    Parts m_parts;
    State m_state = State::None;
    platform::Time m_began{};
    /// What a calibration that failed has looked at.
    int m_pixelsLookedAt = 1;
};

} // namespace glimra::desktop
