#pragma once

#include "app/built_bundle.h"
#include "desktop/loop/qt_run_loop.h"
#include "desktop/windows/application_style.h"
#include "desktop/windows/interface_binder.h"
#include "desktop/windows/keyboard_canvas.h"
#include "desktop/windows/windows.h"
#include "platform/monotonic_clock.h"
#include "simulated/simulated_platform.h"
#include "support/eventually.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace glimra::desktop {

inline constexpr lighting::KeyCode kOne = 0x02;
inline constexpr lighting::KeyCode kQ = 0x10;
inline constexpr int kSlotOfC = 6;

/// The application with its real windows, on a machine that is simulated but for windows and run loop.
class WindowsFixture : public ::testing::Test {
protected:
    WindowsFixture() {
        QApplication::setStyle(new ApplicationStyle);
        m_machine.userDefaults.set("firstStepsDone", true);
    }
    ~WindowsFixture() override { m_runLoop.terminate(); }

    void launch() {
        m_delegate.emplace(m_platform);
        m_windows.emplace(Windows::Parts{
            .delegate = *m_delegate,
            .windowSystem = m_windowSystem,
            .runLoop = m_runLoop,
            .userDefaults = m_machine.userDefaults,
            .keyboard = m_keyboard,
            .now = platform::monotonicNow,
            .quit = [this] { ++m_quits; },
            .keyboardName = m_keyboardName,
            .keyboardChoice = {[this] { return m_driver; },
                               [this](const std::string& name) { m_driver = name; }},
            .placeLights = {m_placing, m_machine.userDefaults, [this] { ++m_resends; }},
            .appearance = {[this] { return m_appearance; },
                           [this](const std::string& name) { m_appearance = name; }},
            .doctorArguments = {"doctor"},
            .lookAtDrivers =
                [] {
                    return doctor::Findings{{"keyboard", doctor::Health::Bad, "No keyboard.", "Buy one."}};
                },
            .captureState = [] { return CaptureState::Screen; },
            .demonstration = m_demonstration,
            .sendToken =
                [this](std::string_view token) {
                    m_delegate->operations().messageQueue.appendToMessageQueue(token);
                },
            .calibrationPixels = {[this] { return m_pixelsPerPoint; },
                                  [this](int pixels) { m_pixelsPerPoint = pixels; }},
            .loginEntry = {}});
        m_delegate->applicationDidFinishLaunching();
    }

    app::Outlets& outlets() { return m_delegate->outlets(); }
    const app::State& state() { return m_delegate->state(); }
    Windows& windows() { return *m_windows; }
    QWidget* window(const std::string& name) { return m_windows->window(name); }

    /// A widget, anywhere in the windows.
    template <class Widget = QWidget>
    Widget* widget(const char* name) {
        for (QWidget* const top : QApplication::topLevelWidgets())
            for (Widget* const found : top->findChildren<Widget*>(name))
                return found;
        throw std::runtime_error(std::string("no widget ") + name);
    }
    QAction* item(const char* name) { return window("mainWindow")->findChild<QAction*>(name); }
    std::string textOf(const char* label) { return widget<QLabel>(label)->text().toStdString(); }
    void click(const char* name) {
        auto* const button = widget<QAbstractButton>(name);
        ASSERT_TRUE(button->isEnabled()) << name;
        button->click();
        settle();
    }
    /// Chooses as a user does.
    void choose(const char* popUp, int index) {
        auto* const box = widget<QComboBox>(popUp);
        box->setCurrentIndex(index);
        Q_EMIT box->activated(index);
    }
    /// Lets posted work and painting take place.
    void settle() {
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }

    void openProgrammer() {
        click("setColorsButton");
        ASSERT_TRUE(window("colorProgrammerWindow")->isVisible());
    }
    KeyboardCanvas* canvas() { return dynamic_cast<KeyboardCanvas*>(widget("keyboardCanvas")); }
    QPoint centerOf(lighting::KeyCode code) { return canvas()->faceOfKey(code).center().toPoint(); }
    void paintKey(lighting::KeyCode code) {
        QTest::mouseClick(canvas(), Qt::LeftButton, {}, centerOf(code));
        settle();
    }
    /// Where the key stands in the layout.
    static std::size_t placeOf(lighting::KeyCode code) {
        const auto& layout = lighting::kKeyboardLayout;
        const auto place = std::ranges::find(layout, code, &lighting::KeyRect::code);
        return static_cast<std::size_t>(place - layout.begin());
    }
    int slotOf(lighting::KeyCode code) { return state().canvas.keysToColors.at(code); }

    platform::Platform platform() {
        platform::Platform platform = m_machine.platform(m_keyboard, app::builtBundle());
        platform.runLoop = m_runLoop;
        platform.windowSystem = m_windowSystem;
        return platform;
    }

    simulated::SimulatedPlatform m_machine{1};
    QtRunLoop m_runLoop;
    QtWindowSystem m_windowSystem{m_machine.userDefaults, m_runLoop};
    keyboards::VirtualKeyboard m_keyboard{platform::monotonicNow};
    int m_quits = 0;
    platform::Property<std::string> m_keyboardName{"test keyboard"};
    std::string m_driver = "auto";
    std::string m_appearance = "desktop";
    keyboards::openrgb::HandPlacing m_placing;
    int m_resends = 0;
    int m_pixelsPerPoint = 1;
    screenlink::DemonstrationCapture m_demonstration{m_machine.readerCapture, m_runLoop};
    platform::Platform m_platform = platform();
    // The windows go first.
    std::optional<app::AppDelegate> m_delegate;
    std::optional<Windows> m_windows;
};

} // namespace glimra::desktop
