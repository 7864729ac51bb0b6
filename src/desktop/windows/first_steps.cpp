#include "desktop/windows/first_steps.h"

#include "platform/stored_values.h"
#include "profiles/action_key_map.h"

#include <QGridLayout>

#include <algorithm>

namespace glimra::desktop {

namespace {

namespace settings = platform::settings;

struct StepRow {
    const char* name;
    const char* title;
};
constexpr std::array<StepRow, 6> kSteps{{{"stepSeeItMove", "See it move"},
                                         {"stepTest", "Test your keyboard"},
                                         {"stepInstallAddon", "Install the add-on"},
                                         {"stepCalibrate", "Calibrate to the game"},
                                         {"stepKeys", "Tell Glimra your keys"},
                                         {"stepStartAtLogin", "Start it when you log in"}}};

const char* wordFor(Mark mark) {
    switch (mark) {
    case Mark::Open:
        return "to do";
    case Mark::Partly:
        return "under way";
    case Mark::Good:
        return "done";
    case Mark::Bad:
        return "failed";
    }
    return "";
}

} // namespace

FirstSteps::FirstSteps(const Parts& parts) : m_parts(parts) {
    for (std::size_t step = 0; step < kStepCount; ++step)
        makeRow(static_cast<Step>(step));
    m_parts.binder.setCommand("guideDismiss", [this] { dismiss(); });
    m_parts.binder.setCommand("showGuide", [this] { showAgain(); });
    m_parts.binder.aboutToSend.observe([this](const app::ActionRow& action, const app::ActionArgument&) {
        if (action.selector.starts_with("test"))
            remember(settings::kTestPatternShown);
    });
    m_parts.demonstration.state.changed.observe([this](Demonstration::State state) {
        if (state == Demonstration::State::Played)
            remember(settings::kDemonstrationPlayed);
        show();
    });
    m_parts.calibration.changed.observe([this] { show(); });
    m_parts.addon.found.observe([this] { show(); });
    m_parts.watch.seen.observe([this](const StatusSnapshot&) { show(); });
    widget("guidePanel")->setVisible(!isDone(settings::kFirstStepsDone));
    show();
}

void FirstSteps::makeRow(Step step) {
    QWidget* const rows = widget("stepRows");
    auto* const grid = static_cast<QGridLayout*>(rows->layout());
    Row& row = m_rows[step];
    row.button = new QuietButton(rows);
    row.button->setObjectName(kSteps[step].name);
    row.button->setText(kSteps[step].title);
    row.button->setProperty("command", kSteps[step].name);
    row.note = new QLabel(rows);
    row.note->setObjectName(QString("%1Note").arg(kSteps[step].name));
    row.note->setTextFormat(Qt::PlainText);
    row.note->setWordWrap(true);
    row.note->setMinimumWidth(16 * row.note->fontMetrics().averageCharWidth());
    row.note->setProperty("look", "note");
    const auto line = static_cast<int>(step);
    grid->addWidget(row.button, line, 0);
    grid->addWidget(row.note, line, 1);
    m_parts.binder.setCommand(kSteps[step].name, [this, step] { act(step); });
}

void FirstSteps::act(Step step) {
    switch (step) {
    case SeeItMove:
        if (m_parts.demonstration.state.get() == Demonstration::State::Playing)
            m_parts.demonstration.stop();
        else
            m_parts.demonstration.play();
        break;
    case Test:
        m_parts.binder.send("testButton:");
        break;
    case InstallAddon:
        m_parts.addon.open();
        break;
    case Calibrate:
        m_parts.calibration.calibrate();
        break;
    case Keys:
        m_parts.binder.send("openWindowToMapKeys:");
        break;
    case StartAtLogin:
        startAtLogin();
        break;
    case kStepCount:
        break;
    }
}

void FirstSteps::startAtLogin() {
    m_loginError = QString::fromStdString(m_parts.loginEntry.set(!m_parts.loginEntry.isOn()));
    show();
    // Where the menu asked for it, the reason must be seen, too.
    if (!m_loginError.isEmpty())
        widget("guidePanel")->show();
}

void FirstSteps::dismiss() {
    m_parts.userDefaults.set(settings::kFirstStepsDone.key, true);
    widget("guidePanel")->hide();
}

void FirstSteps::showAgain() {
    widget("guidePanel")->show();
    m_rows[SeeItMove].button->setFocus();
}

void FirstSteps::show() {
    int done = 0;
    for (std::size_t step = 0; step < kStepCount; ++step) {
        const StepView view = viewOf(static_cast<Step>(step));
        const Row& row = m_rows[step];
        done += view.mark == Mark::Good ? 1 : 0;
        if (row.button->mark() == view.mark && row.note->text() == view.note)
            continue;
        row.button->setMark(view.mark);
        row.button->setAccessibleName(QString("%1, %2").arg(kSteps[step].title, wordFor(view.mark)));
        row.button->setAccessibleDescription(view.note);
        row.note->setText(view.note);
    }
    m_parts.mainWindow->findChild<QLabel*>("guideCount")
        ->setText(done == kStepCount ? QString("all done")
                                     : QString("%1 of %2 done").arg(done).arg(+kStepCount));
}

void FirstSteps::remember(const platform::Setting<bool>& done) {
    if (!isDone(done))
        m_parts.userDefaults.set(done.key, true);
}

bool FirstSteps::isDone(const platform::Setting<bool>& setting) const {
    return platform::storedBool(m_parts.userDefaults, setting.key).value_or(setting.factory);
}

FirstSteps::StepView FirstSteps::viewOf(Step step) const {
    switch (step) {
    case SeeItMove:
        return viewOfDemonstration();
    case Test:
        return viewOfTest();
    case InstallAddon:
        return viewOfAddon();
    case Calibrate:
        return viewOfCalibration();
    case Keys:
        return viewOfKeys();
    default:
        return viewOfLogin();
    }
}

FirstSteps::StepView FirstSteps::viewOfDemonstration() const {
    const Demonstration::State state = m_parts.demonstration.state.get();
    if (state == Demonstration::State::Playing)
        return {Mark::Partly, "It plays. Press again to end it."};
    if (isDone(settings::kDemonstrationPlayed))
        return {Mark::Good, "Played"};
    if (state == Demonstration::State::Stopped)
        return {Mark::Open, "Ended before it was over"};
    return {Mark::Open, "An evening in a few seconds; it needs no game"};
}

FirstSteps::StepView FirstSteps::viewOfTest() const {
    if (!isDone(settings::kTestPatternShown))
        return {Mark::Open, "Shows a red block in a white frame"};
    // Whatever the driver has to say of itself fits between brackets.
    return {Mark::Good, QString("Shown (%1). Reset ends it.").arg(m_parts.watch.snapshot().keyboardName)};
}

FirstSteps::StepView FirstSteps::viewOfLogin() const {
    if (!m_loginError.isEmpty())
        return {Mark::Bad, QString("Not possible: %1").arg(m_loginError)};
    if (m_parts.loginEntry.isOn())
        return {Mark::Good, "It starts without a window. Press again to undo."};
    return {Mark::Open, "So that it is there when you play"};
}

FirstSteps::StepView FirstSteps::viewOfAddon() const {
    const doctor::Findings& findings = m_parts.addon.findings();
    if (findings.empty())
        return {Mark::Open, "Looking for the game…"};
    const auto isClient = [](const doctor::Finding& each) { return each.details.contains("client"); };
    const auto isInstalled = [&](const doctor::Finding& each) {
        return isClient(each) && each.health == doctor::Health::Good;
    };
    if (std::ranges::any_of(findings, isInstalled))
        return {Mark::Good, "Installed. Tick it in the game's list of add-ons."};
    if (std::ranges::any_of(findings, isClient))
        return {Mark::Open, "Tells Glimra what happens in the game"};
    return {Mark::Open, "The game was not found; choose its folder"};
}

FirstSteps::StepView FirstSteps::viewOfCalibration() const {
    const CalibrationHint& hint = m_parts.calibration;
    const bool isCalibrated = m_parts.watch.snapshot().isCalibrated;
    switch (hint.state()) {
    case CalibrationHint::State::Running:
        return {Mark::Partly,
                QString("%1 s left: switch to the game, type /glimracal").arg(hint.secondsLeft())};
    case CalibrationHint::State::Failed:
        return {Mark::Bad, "The strip was not found; press to try again"};
    case CalibrationHint::State::Found:
        return {Mark::Good, "The strip was found"};
    default:
        return isCalibrated ? StepView{Mark::Good, "Glimra knows where the strip is"}
                            : StepView{Mark::Open, "Log in to the game, then press here"};
    }
}

FirstSteps::StepView FirstSteps::viewOfKeys() const {
    const bool areStored =
        std::ranges::any_of(profiles::actionSlots(), [this](const profiles::ActionSlot& slot) {
            return m_parts.userDefaults.get("key" + std::to_string(slot.number)).has_value();
        });
    return areStored ? StepView{Mark::Good, "Your own keys are stored"}
                     : StepView{Mark::Open, "The keys of your action bars"};
}

} // namespace glimra::desktop
