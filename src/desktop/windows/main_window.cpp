#include "desktop/windows/main_window.h"

#include "desktop/windows/flow_layout.h"
#include "desktop/windows/log_view.h"
#include "desktop/windows/page_scroll.h"

#include <array>

namespace glimra::desktop {

namespace {

ProgramWatch::Parts withDemonstration(ProgramWatch::Parts parts, const Demonstration& demonstration) {
    parts.demonstrationPlays = [&demonstration] {
        return demonstration.state.get() == Demonstration::State::Playing;
    };
    return parts;
}

/// In the order in which the eye goes. Chips, marks and steps are made in code, later than what was designed.
constexpr std::array kTabOrder{
    "profileChip1",       "profileChip2",     "profileChip3",      "profileChip4",
    "profileChip5",       "profileChip6",     "profileChip7",      "profileChip8",
    "profileChip9",       "keyboardMark",     "gameMark",          "stripMark",
    "calibrateOtherwise", "calibrateAgain",   "calibrationCancel", "calibrationDismiss",
    "calibrateButton",    "setColorsButton",  "testButton",        "resetButton",
    "helpButton",         "launchBNetButton", "launchWowButton",   "launchClassicButton",
    "guideDismiss",       "stepSeeItMove",    "stepTest",          "stepInstallAddon",
    "stepCalibrate",      "stepKeys",         "copyLog",           "clearLog",
    "myTextScroll"};

/// A card is lighter than the window.
void raise(QWidget* card) {
    card->setBackgroundRole(QPalette::Base);
    // A card fills itself, to its corners.
    card->setAutoFillBackground(!card->property("frameShape").isValid() ||
                                card->property("frameShape").toInt() == QFrame::NoFrame);
}

} // namespace

MainWindow::MainWindow(const Parts& parts)
    : m_keyboard(parts.keyboard),
      m_names(parts.userDefaults),
      m_demonstration(parts.demonstration),
      m_watch(withDemonstration(parts.watch, m_demonstration)),
      m_calibration({parts.window, parts.demonstration.delegate, parts.binder, m_watch,
                     parts.calibrationPixels, parts.watch.now}),
      m_firstSteps({parts.window, parts.userDefaults, parts.binder, m_watch, m_demonstration, m_calibration,
                    parts.addon, parts.loginEntry}),
      m_statusLine(parts.window, m_watch, m_names) {
    const auto widget = [&parts](const char* name) { return parts.window->findChild<QWidget*>(name); };
    auto* const chips = new ProfileChips(widget("profileChips"), m_names);
    chips->follow(m_watch);
    new StatusMarks(
        {widget("stateMarks"), parts.binder, m_watch, parts.lookAtDrivers, parts.addon.findings()});
    new FlowLayout(widget("buttonRow"), Qt::AlignLeft, 2);
    for (const char* const card : {"guidePanel", "messagesPanel", "calibrationPanel", "headerBar"})
        raise(widget(card));
    for (QLabel* const label : parts.window->findChildren<QLabel*>())
        if (label->property("look") == "note")
            label->setForegroundRole(QPalette::PlaceholderText);
    // The order is a ring. Once its last comes after its first, all others have to move to where they belong.
    QWidget::setTabOrder(widget(kTabOrder.front()), widget(kTabOrder.back()));
    for (std::size_t i = 1; i < kTabOrder.size(); ++i)
        QWidget::setTabOrder(widget(kTabOrder[i - 1]), widget(kTabOrder[i]));
    m_watch.seen.observe(
        [this, &lighting = parts.watch.delegate.state().lighting](const StatusSnapshot& now) {
            if (!now.isLit)
                showProfileUntilLit(lighting);
        });
    auto* const log = dynamic_cast<LogView*>(widget("myTextScroll"));
    log->setFrameShape(QFrame::NoFrame);
    parts.binder.setCommand("copyLog", [log] { log->copyAll(); });
    parts.binder.setCommand("clearLog", [log] { log->clearView(); });
    // What an action changes is seen at once.
    parts.binder.sent.observe([this] { m_watch.look(); });
    m_names.changed.observe([this] { m_watch.look(); });
    m_demonstration.state.changed.observe([this](Demonstration::State) { m_watch.look(); });
    dynamic_cast<PageScroll*>(widget("page"))->fitContent();
    parts.addon.refreshFindings();
}

void MainWindow::showProfileUntilLit(const lighting::LightingState& lighting) {
    keyboards::KeyColors colors{};
    if (lighting.profileInMemory != 0)
        for (std::size_t index = 0; index < colors.size(); ++index)
            colors[index] = lighting::toRgb(lighting::mappedColor(
                lighting.keyboardColorSet, lighting.keyToColorMap, lighting::kKeyboardLayout[index].code));
    m_keyboard.showUntilLit(colors);
}

} // namespace glimra::desktop
