#include "desktop/windows/first_steps.h"

#include "platform/stored_values.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>

#include <array>

namespace glimra::desktop {

namespace {

constexpr platform::Setting<bool> kDone = platform::settings::kFirstStepsDone;

struct Step {
    const char* title;
    /// "%1" is the keyboard.
    const char* text;
    /// Text of the button that does the step, and the main window's menu item that it chooses; empty for
    /// none.
    const char* act = "";
    const char* item = "";
};

constexpr std::array<Step, 5> kSteps{{
    {"Welcome to Glimra",
     "What happens in your game becomes light on your keyboard. Glimra lights the %1; what "
     "it shows is drawn below."},
    {"Install the Add-on",
     "A small add-on in World of Warcraft, Glimraxmit, shows Glimra what happens there. Install it, then "
     "start the game and tick it in the list of add-ons.",
     "Install the Add-on…", "installAddonItem"},
    {"Calibrate",
     "Log in to the game. Then press Calibrate here twice, go back to the game and type /glimracal in the "
     "chat box. The log below tells when it is done.",
     "Calibrate", "calibrateItem"},
    {"Test",
     "The test pattern is a red block in a white frame. If your keyboard shows it, the keyboard works. Press "
     "Reset to end it.",
     "Show Test Pattern", "testItem"},
    {"Ready",
     "Choose your colors with Set Colors, and tell Glimra your keys with Map Action Keys in the menu "
     "Profiles. Help has the rest."},
}};

} // namespace

FirstSteps::FirstSteps(QWidget* mainWindow, platform::UserDefaults& userDefaults,
                       platform::Property<std::string>& keyboardName)
    : m_window(mainWindow),
      m_userDefaults(userDefaults),
      m_keyboardName(keyboardName) {
    const bool isDone = platform::storedBool(m_userDefaults, kDone.key).value_or(kDone.factory);
    auto* const panel = m_window->findChild<QWidget*>("guidePanel");
    panel->setBackgroundRole(QPalette::Base);
    panel->setAutoFillBackground(true);
    panel->setVisible(!isDone);
    keyboardName.changed.observe([this](const std::string&) { show(); });
    show();
}

void FirstSteps::act() {
    if (auto* const item = m_window->findChild<QAction*>(kSteps[m_step].item))
        item->trigger();
}

void FirstSteps::next() {
    if (m_step + 1 == kSteps.size())
        return dismiss();
    ++m_step;
    show();
}

void FirstSteps::dismiss() {
    m_userDefaults.set(kDone.key, true);
    m_window->findChild<QWidget*>("guidePanel")->hide();
}

void FirstSteps::showAgain() {
    m_step = 0;
    show();
    m_window->findChild<QWidget*>("guidePanel")->show();
    m_window->findChild<QWidget*>("guideNext")->setFocus();
}

void FirstSteps::show() {
    const Step& step = kSteps[m_step];
    const bool isLast = m_step + 1 == kSteps.size();
    m_window->findChild<QLabel*>("guideTitle")
        ->setText(QString("%1 (%2 of %3)").arg(step.title).arg(m_step + 1).arg(kSteps.size()));
    const QString text(step.text);
    m_window->findChild<QLabel*>("guideText")
        ->setText(text.contains("%1") ? text.arg(QString::fromStdString(m_keyboardName.get())) : text);
    auto* const act = m_window->findChild<QPushButton*>("guideAct");
    act->setText(step.act);
    act->setVisible(step.act[0] != '\0');
    m_window->findChild<QPushButton*>("guideNext")->setText(isLast ? "Done" : "Next");
    m_window->findChild<QPushButton*>("guideDismiss")->setVisible(!isLast);
}

} // namespace glimra::desktop
