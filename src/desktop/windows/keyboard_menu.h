#pragma once

#include "app/app_delegate.h"

#include <QActionGroup>
#include <QMenu>

#include <functional>
#include <string>

namespace glimra::desktop {

/// Which keyboard driver is in use, and how to take another, both by name.
struct KeyboardChoice {
    std::function<std::string()> chosen;
    std::function<void(const std::string&)> choose;
};

/// The part of the menu Keyboard that tells how the keyboard is lit, and whether effects end when the game is
/// gone. Main thread.
class KeyboardMenu final : public QObject {
public:
    KeyboardMenu(QMenu* menu, KeyboardChoice choice, const app::AppDelegate& delegate);

private:
    void addDriver(QMenu* menu, const std::string& name, const QString& title);

    KeyboardChoice m_choice;
    QActionGroup m_drivers{this};
};

} // namespace glimra::desktop
