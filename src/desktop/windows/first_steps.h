#pragma once

#include "platform/controls.h"
#include "platform/user_defaults.h"

#include <QWidget>

namespace glimra::desktop {

/// The short guide at the top of the main window for the first run: add-on, calibration, test. It goes for
/// good when it was done or dismissed.
class FirstSteps {
public:
    /// Works with the panel and the menu items of `mainWindow`, by their names.
    FirstSteps(QWidget* mainWindow, platform::UserDefaults& userDefaults,
               platform::Property<std::string>& keyboardName);

    /// Does what the step is about.
    void act();
    /// Goes on; after the last step the guide is done.
    void next();
    void dismiss();
    void showAgain();

private:
    void show();

    QWidget* m_window;
    platform::UserDefaults& m_userDefaults;
    const platform::Property<std::string>& m_keyboardName;
    std::size_t m_step = 0;
};

} // namespace glimra::desktop
