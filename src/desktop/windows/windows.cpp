#include "desktop/windows/windows.h"

#include "app/built_bundle.h"
#include "desktop/windows/action_slots.h"
#include "desktop/windows/application_icon.h"
#include "desktop/windows/keyboard_menu.h"
#include "desktop/windows/log_view.h"
#include "desktop/windows/shortcut_list.h"
#include "desktop/windows/tray.h"
#include "desktop/windows/window_fitter.h"
#include "platform/stored_values.h"

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
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

namespace glimra::desktop {

namespace {

/// Puts a widget that needs more than a designer can give where a plain one stands for it.
void replace(QWidget* window, QWidget* replacement, const QString& name) {
    auto* const placeholder = window->findChild<QWidget*>(name);
    replacement->setObjectName(name);
    placeholder->parentWidget()->layout()->replaceWidget(placeholder, replacement);
    delete placeholder;
}

/// Names under "example" are for examples, https://www.rfc-editor.org/rfc/rfc2606
bool isPage(const std::string& address) {
    const QUrl url(QString::fromStdString(address));
    return !url.host().isEmpty() && !url.host().endsWith(".example");
}

/// Headings are larger by a factor, whatever size the desktop's font has.
void styleLabels(QWidget* window) {
    for (QLabel* const label : window->findChildren<QLabel*>()) {
        // What explains a control is quieter than the control.
        // It takes the width that is there.
        if (label->property("hint").toBool()) {
            label->setForegroundRole(QPalette::PlaceholderText);
            label->setMinimumWidth(label->fontMetrics().averageCharWidth() * 24);
            QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Preferred);
            policy.setHeightForWidth(true);
            label->setSizePolicy(policy);
        }
        const QString kind = label->property("fontScale").toString();
        if (kind.isEmpty())
            continue;
        QFont font = label->font();
        font.setPointSizeF(font.pointSizeF() * (kind == "title" ? 1.8 : 1.2));
        font.setWeight(QFont::DemiBold);
        label->setFont(font);
    }
}

} // namespace

Windows::Windows(const Parts& parts) : m_parts(parts), m_binder(parts.delegate) {
    QApplication::setWindowIcon(applicationIcon());
    buildMainWindow();
    buildProgrammer();
    buildOthers();
    furnishMainWindow();
    bindAll();
    m_guard = std::make_unique<PainterGuard>(
        PainterGuard::Parts{m_binder, m_parts.delegate, m_parts.windowSystem, m_parts.runLoop, m_parts.quit,
                            [this] { return staysInTray(); }});
    m_questions = std::make_unique<Questions>(window("profileChangeAlert"), window("copyProfileDialog"),
                                              m_parts.delegate);
    furnishMenus();
    m_painter->takeOver();
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
    styleLabels(widget.get());
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
    m_keyboardView = new KeyboardView(m_parts.keyboard, m_parts.now);
    replace(m_mainWindow, m_keyboardView, "imageView");
    replace(m_mainWindow, new LogView(m_parts.delegate.outlets().myTextScroll), "myTextScroll");
}

void Windows::buildProgrammer() {
    m_programmer = add<Ui::ColorProgrammer, QWidget>();
    m_painter = std::make_unique<PainterWindow>(
        m_programmer,
        PainterWindow::Parts{m_parts.delegate, m_binder, m_parts.runLoop, m_parts.userDefaults});
}

void Windows::buildOthers() {
    // When a dialog goes, the window that it belongs to gets the keyboard back.
    QWidget* const about = add<Ui::About, QWidget>();
    auto* const installAddon = add<Ui::InstallAddon, QDialog>(m_mainWindow);
    m_addonInstaller =
        std::make_unique<AddonInstaller>(installAddon, m_parts.runLoop, m_parts.delegate.state().launcher);
    about->findChild<QLabel*>("aboutIcon")->setPixmap(QApplication::windowIcon().pixmap(72));
    for (QWidget* const window :
         std::initializer_list<QWidget*>{add<Ui::ProfileChangeAlert, QDialog>(m_programmer),
                                         add<Ui::CopyProfileDialog, QDialog>(m_programmer),
                                         add<Ui::LaunchOptions, QDialog>(m_mainWindow), installAddon, about})
        new WindowFitter(window, WindowFitter::Growth::None);
    auto* const setter = add<Ui::ActionKeySetter, QWidget>();
    new ActionSlots(setter, m_parts.delegate, m_binder);
    for (QWidget* const window :
         std::initializer_list<QWidget*>{m_mainWindow, m_programmer, setter, add<Ui::Help, QWidget>()})
        new WindowFitter(window, WindowFitter::Growth::Free);
}

void Windows::furnishMainWindow() {
    m_main = std::make_unique<MainWindow>(
        MainWindow::Parts{.window = m_mainWindow,
                          .keyboard = *m_keyboardView,
                          .binder = m_binder,
                          .addon = *m_addonInstaller,
                          .loginEntry = m_parts.loginEntry,
                          .lookAtDrivers = m_parts.lookAtDrivers,
                          .calibrationPixels = m_parts.calibrationPixels,
                          .watch = {m_mainWindow, m_parts.delegate, m_parts.userDefaults, m_parts.keyboard,
                                    m_parts.keyboardName, m_parts.captureState, nullptr, m_parts.now},
                          .demonstration = {m_parts.demonstration, m_parts.delegate, m_binder,
                                            m_parts.runLoop, m_parts.sendToken},
                          .userDefaults = m_parts.userDefaults});
}

void Windows::furnishMenus() {
    const auto menu = [this](const char* name) { return m_mainWindow->findChild<QMenu*>(name); };
    const auto item = [this](const char* name) { return m_mainWindow->findChild<QAction*>(name); };
    furnishKeyboardMenu(menu("keyboardMenu"), m_parts.keyboardChoice, m_parts.delegate);
    QAction* const placeLights = item("placeLightsItem");
    QObject::connect(menu("keyboardMenu"), &QMenu::aboutToShow, placeLights, [this, placeLights] {
        placeLights->setEnabled(m_parts.placeLights.placing.board().has_value());
    });
    makeExclusive(menu("autorunMenu"));
    addChoices(menu("appearanceMenu"), "appearance-",
               {{"desktop", "As the &Desktop"}, {"dark", "Da&rk"}, {"light", "&Light"}}, m_parts.appearance);
    QAction* const keepInTray = item("keepInTrayItem");
    QObject::connect(menu("glimraMenu"), &QMenu::aboutToShow, keepInTray, [this, keepInTray] {
        keepInTray->setEnabled(Tray::isThere());
        keepInTray->setChecked(
            platform::storedBool(m_parts.userDefaults, platform::settings::kKeepInTray.key).value_or(false));
    });
    QAction* const startAtLogin = item("startAtLoginItem");
    QObject::connect(menu("glimraMenu"), &QMenu::aboutToShow, startAtLogin,
                     [this, startAtLogin] { startAtLogin->setChecked(m_parts.loginEntry.isOn()); });
    // A build may have no pages; an address for examples stands for none.
    const platform::Bundle& bundle = app::builtBundle();
    item("downloadsItem")->setVisible(isPage(bundle.downloadPage));
    window("aboutWindow")->findChild<QWidget*>("homePageButton")->setVisible(isPage(bundle.homePage));
}

bool Windows::staysInTray() const {
    return Tray::isThere() &&
           platform::storedBool(m_parts.userDefaults, platform::settings::kKeepInTray.key).value_or(false);
}

void Windows::launchHidden(const std::function<void()>& launch) {
    platform::Window& window = m_parts.delegate.outlets().mainWindow;
    m_mainWindow->setAttribute(Qt::WA_DontShowOnScreen);
    launch();
    window.visible.set(false);
    m_mainWindow->setAttribute(Qt::WA_DontShowOnScreen, false);
    if (Tray::isThere())
        return;
    m_mainWindow->setWindowState(Qt::WindowMinimized);
    window.visible.set(true);
    constexpr int kTries = 60;
    hideOnceThereIsATray(kTries);
}

/// While a session starts, the desktop's tray may come later than the programs that go there.
void Windows::hideOnceThereIsATray(int tries) {
    if (tries == 0 || !m_mainWindow->isMinimized())
        return;
    if (Tray::isThere())
        m_parts.delegate.outlets().mainWindow.visible.set(false);
    else
        QTimer::singleShot(std::chrono::seconds(1), m_mainWindow,
                           [this, tries] { hideOnceThereIsATray(tries - 1); });
}

void Windows::showShortcuts() {
    if (!m_shortcuts)
        m_shortcuts = std::make_unique<TextWindow>(m_mainWindow, "shortcutsWindow", "Keyboard Shortcuts");
    m_shortcuts->show(shortcutList({m_mainWindow, m_programmer}));
}

void Windows::bindAll() {
    m_binder.aboutToSend.observe(
        [this](const app::ActionRow& action, const app::ActionArgument&) { sayWhatIsIgnored(action); });
    m_binder.setCommand("quit", [this] { quit(); });
    m_binder.setCommand("keepInTray", [this] {
        m_parts.userDefaults.set(platform::settings::kKeepInTray.key, !staysInTray());
    });
    m_binder.setCommand("placeLights", [this] {
        if (!m_placeLights)
            m_placeLights = std::make_unique<PlaceLightsWindow>(m_mainWindow, m_parts.placeLights);
        m_placeLights->open();
    });
    m_binder.setCommand("showShortcuts", [this] { showShortcuts(); });
    m_binder.setCommand("checkMachine", [this] {
        if (!m_machineCheck)
            m_machineCheck = std::make_unique<MachineCheck>(m_mainWindow, m_parts.doctorArguments);
        m_machineCheck->start();
    });
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

void Windows::sayWhatIsIgnored(const app::ActionRow& action) {
    if (m_parts.delegate.operations().calibration.isRunning() && action.selector.starts_with("calibrate"))
        m_parts.delegate.operations().log.tell("Glimra is calibrating already, for up to 90 seconds.");
}

} // namespace glimra::desktop
