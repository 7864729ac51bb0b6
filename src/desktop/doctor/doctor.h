#pragma once

#include "desktop/settings/settings_copy.h"
#include "desktop/x11/capture_state.h"
#include "keyboards/chosen_keyboard.h"

#include <string>

namespace glimra::desktop::doctor {

enum class ReportForm { Words, Json };

/// What to examine: the machine as the program would use it.
struct Subject {
    /// As given on the command line.
    std::string captureDisplay;
    CaptureChoice capture = CaptureChoice::Automatic;
    keyboards::ChosenKeyboard::Options keyboard;
    const SettingsCopy& settings;
};

/// Prints what works here, what does not, and how to fix it. Returns the program's exit status: 0 only if
/// nothing is found that keeps the program from working. Main thread; needs an application object.
int runDoctor(const Subject& subject, ReportForm form);

} // namespace glimra::desktop::doctor
