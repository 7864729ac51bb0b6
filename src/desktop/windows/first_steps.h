#pragma once

#include "desktop/doctor/finding.h"
#include "desktop/services/login_entry.h"
#include "desktop/windows/addon_installer.h"
#include "desktop/windows/calibration_hint.h"
#include "desktop/windows/demonstration.h"
#include "desktop/windows/program_watch.h"
#include "desktop/windows/quiet_button.h"

#include <QLabel>

#include <array>

namespace glimra::desktop {

/// The card of the main window with what a newcomer does once. Each step is a button that does it, with a
/// mark and a note that come true by themselves. The card goes for good when it is hidden, until it is asked
/// for again.
class FirstSteps final : public QObject {
public:
    struct Parts {
        QWidget* mainWindow;
        platform::UserDefaults& userDefaults;
        InterfaceBinder& binder;
        ProgramWatch& watch;
        Demonstration& demonstration;
        CalibrationHint& calibration;
        AddonInstaller& addon;
        LoginEntry loginEntry;
    };

    /// Makes the steps in the card, to be bound like a designer's buttons.
    explicit FirstSteps(const Parts& parts);

    void dismiss();
    void showAgain();

private:
    enum Step : std::size_t { SeeItMove, Test, InstallAddon, Calibrate, Keys, StartAtLogin, kStepCount };

    struct StepView {
        Mark mark = Mark::Open;
        QString note;
    };
    struct Row {
        QuietButton* button = nullptr;
        QLabel* note = nullptr;
    };

    void makeRow(Step step);
    void act(Step step);
    void show();
    void remember(const platform::Setting<bool>& done);
    bool isDone(const platform::Setting<bool>& setting) const;
    StepView viewOf(Step step) const;
    StepView viewOfDemonstration() const;
    StepView viewOfTest() const;
    StepView viewOfAddon() const;
    StepView viewOfCalibration() const;
    StepView viewOfKeys() const;
    StepView viewOfLogin() const;
    void startAtLogin();
    QWidget* widget(const char* name) const { return m_parts.mainWindow->findChild<QWidget*>(name); }

    Parts m_parts;
    std::array<Row, kStepCount> m_rows;
    /// Why the entry could not be changed.
    QString m_loginError;
};

} // namespace glimra::desktop
