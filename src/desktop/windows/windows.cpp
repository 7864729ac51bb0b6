#include "desktop/windows/windows.h"

#include "app/palette_check.h"
#include "desktop/windows/application_icon.h"
#include "desktop/windows/content_fitter.h"
#include "desktop/windows/keyboard_view.h"
#include "desktop/windows/log_view.h"
#include "desktop/windows/seconds_box.h"
#include "profiles/color_slots.h"

#include "ui_about.h"
#include "ui_action_key_setter.h"
#include "ui_color_programmer.h"
#include "ui_copy_profile_dialog.h"
#include "ui_help.h"
#include "ui_install_addon.h"
#include "ui_launch_options.h"
#include "ui_main_window.h"
#include "ui_profile_change_alert.h"

#include <QApplication>
#include <QVBoxLayout>

#include <algorithm>

namespace glimra::desktop {

namespace {

/// Puts a widget that needs more than a designer can give where a plain one stands for it.
void replace(QWidget* window, QWidget* replacement, const QString& name) {
    auto* const placeholder = window->findChild<QWidget*>(name);
    replacement->setObjectName(name);
    placeholder->parentWidget()->layout()->replaceWidget(placeholder, replacement);
    delete placeholder;
}

/// Headings are larger by a factor, whatever size the desktop's font has.
void scaleFonts(QWidget* window) {
    for (QLabel* const label : window->findChildren<QLabel*>()) {
        const QString kind = label->property("fontScale").toString();
        if (kind.isEmpty())
            continue;
        QFont font = label->font();
        font.setPointSizeF(font.pointSizeF() * (kind == "title" ? 1.8 : 1.2));
        font.setWeight(QFont::DemiBold);
        label->setFont(font);
    }
}

QString letterOfSlot(int slot) {
    if (slot == lighting::kCooldownSlot)
        return "cooldown color";
    const auto tag = std::ranges::find(profiles::kSlotOfTag, slot);
    if (tag == profiles::kSlotOfTag.end())
        return {};
    return QString("color ") + QChar('A' + static_cast<int>(tag - profiles::kSlotOfTag.begin()));
}

} // namespace

Windows::Windows(const Parts& parts) : m_parts(parts), m_binder(parts.delegate) {
    buildMainWindow();
    buildProgrammer();
    buildOthers();
    furnishMainWindow();
    bindAll();
    m_guard = std::make_unique<PainterGuard>(
        PainterGuard::Parts{m_binder, m_parts.delegate, m_parts.windowSystem, m_parts.runLoop, m_parts.quit});
    m_editedProfile = std::make_unique<EditedProfile>(m_programmer, m_parts.delegate, m_parts.runLoop);
    m_questions = std::make_unique<Questions>(window("profileChangeAlert"), window("copyProfileDialog"),
                                              m_parts.delegate);
    m_keyboardMenu = std::make_unique<KeyboardMenu>(m_mainWindow->findChild<QMenu*>("keyboardMenu"),
                                                    m_parts.keyboardChoice, m_parts.delegate);
    showSteps();
}

Windows::~Windows() = default;

QWidget* Windows::window(const std::string& outlet) const {
    return qobject_cast<QWidget*>(m_binder.widgetOf(outlet));
}

template <class Design, class Widget>
Widget* Windows::add(QWidget* parent) {
    auto widget = std::make_unique<Widget>(parent);
    if (parent != nullptr)
        widget->setWindowFlag(Qt::Dialog);
    Design().setupUi(widget.get());
    scaleFonts(widget.get());
    widget->setWindowIcon(applicationIcon());
    Widget* const raw = widget.get();
    // Where there is a parent, it deletes the widget.
    if (parent == nullptr)
        m_windows.push_back(std::move(widget));
    else
        (void)widget.release();
    return raw;
}

void Windows::buildMainWindow() {
    m_mainWindow = add<Ui::MainWindow, QMainWindow>();
    replace(m_mainWindow, new KeyboardView(m_parts.keyboard, m_parts.now), "imageView");
    replace(m_mainWindow, new LogView(m_parts.delegate.outlets().myTextScroll), "myTextScroll");
}

void Windows::buildProgrammer() {
    m_programmer = add<Ui::ColorProgrammer, QWidget>();
    auto* const blinkTime = dynamic_cast<SecondsBox*>(m_programmer->findChild<QWidget*>("blinkTimeTextbox"));
    auto* const limits = m_programmer->findChild<QLabel*>("secondsLabel");
    blinkTime->refused = [limits, range = blinkTime->limits()](bool refused) {
        limits->setText(QString(refused ? "⚠ Only %1 seconds" : "seconds (%1)").arg(range));
    };
    // Nothing moves when the words change.
    blinkTime->refused(true);
    limits->setMinimumWidth(limits->sizeHint().width());
    blinkTime->refused(false);
    m_canvas = dynamic_cast<KeyboardCanvas*>(m_programmer->findChild<QWidget*>("keyboardCanvas"));
    m_canvas->setSource(
        {.draw =
             [this](const auto& showKey) { m_parts.delegate.operations().colorPainter.drawKeys(showKey); },
         .colorName = [this](lighting::KeyCode code) { return colorNameOfKey(code); }});
    m_parts.delegate.outlets().keyboardCanvas.displayNeeded.observe([this] { askForCanvas(); });
}

void Windows::buildOthers() {
    // When a dialog goes, the window that it belongs to gets the keyboard back.
    QWidget* const about = add<Ui::About, QWidget>();
    auto* const installAddon = add<Ui::InstallAddon, QDialog>(m_mainWindow);
    m_addonInstaller =
        std::make_unique<AddonInstaller>(installAddon, m_parts.runLoop, m_parts.delegate.state().launcher);
    for (QWidget* const window : std::initializer_list<QWidget*>{
             add<Ui::ProfileChangeAlert, QDialog>(m_programmer),
             add<Ui::CopyProfileDialog, QDialog>(m_programmer), add<Ui::LaunchOptions, QDialog>(m_mainWindow),
             add<Ui::ActionKeySetter, QWidget>(), installAddon, about})
        new ContentFitter(window);
    about->findChild<QLabel*>("aboutIcon")->setPixmap(applicationIcon().pixmap(72));
    add<Ui::Help, QWidget>();
}

void Windows::furnishMainWindow() {
    m_main = std::make_unique<MainWindow>(
        MainWindow::Parts{.window = m_mainWindow,
                          .binder = m_binder,
                          .addon = *m_addonInstaller,
                          .lookAtDrivers = m_parts.lookAtDrivers,
                          .calibrationPixels = m_parts.calibrationPixels,
                          .watch = {m_mainWindow, m_parts.delegate, m_parts.userDefaults, m_parts.keyboard,
                                    m_parts.keyboardName, m_parts.captureState, nullptr, m_parts.now},
                          .demonstration = {m_parts.demonstration, m_parts.delegate, m_binder,
                                            m_parts.runLoop, m_parts.sendToken},
                          .userDefaults = m_parts.userDefaults});
}

void Windows::bindAll() {
    m_binder.aboutToSend.observe(
        [this](const app::ActionRow& action, const app::ActionArgument&) { sayWhatIsIgnored(action); });
    m_binder.setCommand("quit", [this] { quit(); });
    m_binder.setCommand("installAddon", [this] { m_addonInstaller->open(); });
    m_binder.setCommand("addonChooseFolder", [this] { m_addonInstaller->chooseFolder(); });
    m_binder.setCommand("addonInstall", [this] { m_addonInstaller->install(); });
    m_binder.setCommand("addonClose", [this] { m_addonInstaller->close(); });
    m_binder.addOutlet("debugMenuItem", &m_parts.delegate.outlets().debugMenuItem);
    for (const auto& window : m_windows)
        m_binder.bind(window.get());
    for (const app::NamedOutlet& outlet : app::namedOutlets())
        if (platform::Window* const control = outlet.windowIn(m_parts.delegate.outlets()))
            if (QWidget* const widget = window(std::string(outlet.name)))
                m_parts.windowSystem.addWindow(*control, widget);
    m_parts.windowSystem.setMainWindow(m_mainWindow);
}

void Windows::askForCanvas() {
    const platform::Window& window = m_parts.delegate.outlets().colorProgrammerWindow;
    if (m_canvasIsAsked || !window.visible.get())
        return;
    // However often it is asked for within one operation, one drawing shows all of it.
    m_canvasIsAsked = true;
    m_parts.runLoop.post([this, &window] {
        m_canvasIsAsked = false;
        if (!window.visible.get())
            return;
        m_canvas->redraw();
        m_editedProfile->show();
        showSteps();
    });
}

void Windows::showSteps() {
    m_programmer->findChild<QAbstractButton*>("undoButton")
        ->setEnabled(m_parts.delegate.operations().canvasEdits.canUndo());
    m_programmer->findChild<QAbstractButton*>("redoButton")
        ->setEnabled(m_parts.delegate.operations().canvasEdits.canRedo());
    showWhatIsPossible();
    showPaletteWarning();
}

void Windows::showWhatIsPossible() {
    const app::State& state = m_parts.delegate.state();
    const app::Outlets& outlets = m_parts.delegate.outlets();
    m_programmer->findChild<QWidget*>("cooldownPreviewBtn")
        ->setEnabled(outlets.cooldownPreviewBtn.enabled.get() &&
                     m_parts.delegate.operations().colorProgrammer.canvasShowsCooldowns());
    m_programmer->findChild<QWidget*>("controlAllLightsCheckbox")
        ->setEnabled(outlets.controlAllLightsCheckbox.enabled.get() && !state.options.useSingleColorMode);
}

void Windows::sayWhatIsIgnored(const app::ActionRow& action) {
    if (m_parts.delegate.operations().calibration.isRunning() && action.selector.starts_with("calibrate"))
        m_parts.delegate.operations().log.tell("Glimra is calibrating already, for up to 90 seconds.");
}

void Windows::showPaletteWarning() {
    const app::State& state = m_parts.delegate.state();
    QStringList sentences;
    if (m_parts.delegate.operations().colorProgrammer.canvasShowsCooldowns())
        for (const app::PaletteWarning& warning :
             app::checkPalette(state.canvas.keyColorSet, state.canvas.keysToColors, state.actionKeys)) {
            const std::string_view whom = app::describe(warning.vision);
            sentences.append(
                warning.slot == lighting::kCooldownSlot
                    ? QString("Some action keys have the cooldown color themselves.")
                    : QString("The cooldown color is hard to tell from %1 %2.")
                          .arg(letterOfSlot(warning.slot),
                               QString::fromUtf8(whom.data(), static_cast<qsizetype>(whom.size()))));
        }
    auto* const label = m_programmer->findChild<QLabel*>("paletteWarning");
    label->setText(sentences.isEmpty() ? QString() : "⚠ " + sentences.join(' '));
    label->setVisible(!sentences.isEmpty());
}

QString Windows::colorNameOfKey(lighting::KeyCode code) const {
    const lighting::KeyMap& map = m_parts.delegate.state().canvas.keysToColors;
    return code < map.size() ? letterOfSlot(map[code]) : QString();
}

} // namespace glimra::desktop
