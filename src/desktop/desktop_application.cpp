#include "desktop/desktop_application.h"

#include "desktop/doctor/checks.h"
#include "desktop/keyboard_options.h"
#include "desktop/services/xdg_folders.h"
#include "platform/monotonic_clock.h"

#include <QApplication>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <thread>
#include <utility>

namespace glimra::desktop {

namespace {

/// How long the running instance may take to answer or, when it is quitting, to end.
constexpr auto kPatience = std::chrono::seconds(3);
constexpr auto kPause = std::chrono::milliseconds(50);

void printLog(platform::TextView& log) {
    log.replaced.observe([](std::size_t, std::size_t, std::string_view addition) {
        std::fwrite(addition.data(), 1, addition.size(), stdout);
        std::fflush(stdout);
    });
}

/// Writes to the log, once, what the machine's services cannot do, when debug mode is turned on.
void tellNotes(DesktopPlatform& machine, app::AppDelegate& delegate) {
    app::Outlets& outlets = delegate.outlets();
    outlets.debugMenuItem.on.changed.observe([&](bool debugMode) {
        if (!debugMode)
            return;
        // Posted, so that the notes follow the lines that debug mode begins with.
        machine.runLoop.post([&] {
            for (const std::string& note : std::exchange(machine.notes, {}))
                if (delegate.state().log.debugMode)
                    outlets.myTextScroll.insertAtSelection(note + "\n");
        });
    });
}

/// Makes this the running instance. If there already is one, brings its windows to the front and returns the
/// program's exit status.
std::optional<int> giveWay(RunningInstance& instance) {
    const platform::Time deadline = platform::monotonicNow() + kPatience;
    while (!instance.claim()) {
        if (instance.send({InstanceCommand::Kind::BringToFront})) {
            std::fputs("Glimra is running already; its windows come to the front.\n", stderr);
            return EXIT_SUCCESS;
        }
        if (platform::monotonicNow() > deadline) {
            std::fprintf(stderr,
                         "glimra: Glimra is running already, but does not answer: some program holds %s. End "
                         "it first.\n",
                         instance.heldElsewhere().c_str());
            return EXIT_FAILURE;
        }
        std::this_thread::sleep_for(kPause);
    }
    return std::nullopt;
}

} // namespace

DesktopApplication::DesktopApplication(const Options& options, RunningInstance& instance)
    : m_instance(instance),
      m_isHidden(options.hidden),
      m_machine(options),
      m_witnesses(options, m_machine.platform()),
      m_delegate(m_witnesses.platform()),
      m_windows(
          {.delegate = m_delegate,
           .windowSystem = m_machine.windowSystem,
           .runLoop = m_machine.runLoop,
           .userDefaults = m_machine.settings,
           .keyboard = m_machine.keyboard.drawn(),
           .now = platform::monotonicNow,
           .quit = [this] { quit(); },
           .keyboardName = m_machine.keyboard.description,
           .keyboardChoice = {[this] { return m_machine.keyboard.chosen(); },
                              [this](const std::string& name) { m_machine.chooseKeyboard(name); }},
           .placeLights = {m_machine.keyboard.placing(), m_machine.settings,
                           [this] { m_machine.keyboard.resendAll(); }},
           .appearance = {[this] { return appearance(); },
                          [this](const std::string& name) { chooseAppearance(name); }},
           .doctorArguments = doctorArguments(options),
           .lookAtDrivers =
               [drivers = keyboardOptions(options, {m_machine.settings, m_machine.systemLog}).drivers] {
                   return doctor::lookAtKeyboards(drivers);
               },
           .captureState = [this] { return m_machine.readerCapture.state(); },
           .demonstration = m_machine.demonstration,
           .sendToken = [this](std::string_view token) { sendToken(token); },
           .calibrationPixels = {[this] { return m_machine.calibrationPixels(); },
                                 [this](int pixels) { m_machine.setCalibrationPixels(pixels); }},
           .loginEntry = {configurationFolder(), QCoreApplication::applicationFilePath().toStdString()}}),
      m_tray(m_windows.binder(), m_delegate, [this] { m_windows.quit(); }),
      m_quitRequests([this] { quit(); }),
      m_exitGuard([this] { abandon(); }) {
    m_theme.choose(appearance());
    if (options.printLog)
        printLog(m_delegate.outlets().myTextScroll);
    m_witnesses.tell(&RunWitness::follow, m_delegate, m_windows.binder());
    tellTheLog();
    followCalibration();
    m_instance.obey([this](const InstanceCommand& command) { return take(command); });
}

DesktopApplication::~DesktopApplication() {
    m_instance.obey(nullptr);
    // The reader's thread uses the delegate, which is destroyed before it.
    m_machine.readerThread.join();
}

std::string DesktopApplication::appearance() {
    return platform::SettingsReader{m_machine.settings, m_machine.systemLog}.value(
        platform::settings::kAppearance);
}

void DesktopApplication::chooseAppearance(const std::string& name) {
    m_machine.settings.set(platform::settings::kAppearance.key, name);
    m_theme.choose(name);
}

void DesktopApplication::tellTheLog() {
    const auto tell = [this](std::string_view line) { m_delegate.operations().log.tell(line); };
    tellNotes(m_machine, m_delegate);
    m_machine.told.observe(tell);
    m_machine.workspace.told.observe(tell);
    m_machine.keyboard.told.observe(tell);
    m_machine.settings.told.observe(tell);
}

void DesktopApplication::followCalibration() {
    screenlink::Calibration& calibration = m_delegate.operations().calibration;
    calibration.succeeded.observe([this] { m_machine.calibrationSucceeded(); });
    // After the window, which tells by what was looked at which way remains.
    calibration.failure.changed.observe([this](const std::optional<screenlink::SearchFailure>& failure) {
        if (failure)
            m_machine.calibrationFailed();
    });
}

bool DesktopApplication::take(const InstanceCommand& command) {
    if (m_machine.lifecycle.isEnding())
        return command.kind == InstanceCommand::Kind::Quit;
    m_machine.runLoop.post([this, command] { perform(command); });
    return true;
}

void DesktopApplication::perform(const InstanceCommand& command) {
    switch (command.kind) {
    case InstanceCommand::Kind::BringToFront:
        return m_delegate.outlets().mainWindow.bringToFront();
    case InstanceCommand::Kind::Quit:
        return quit();
    case InstanceCommand::Kind::TestPattern:
        return m_windows.binder().send("testLightsMI:");
    case InstanceCommand::Kind::Profile:
        // The same path that the game's request for a profile takes.
        return sendToken(std::to_string(command.profile));
    }
}

void DesktopApplication::sendToken(std::string_view token) {
    m_witnesses.tell(&RunWitness::token, token);
    m_delegate.operations().messageQueue.appendToMessageQueue(token);
}

void DesktopApplication::launch() {
    m_witnesses.tell(&RunWitness::aboutToLaunch);
    const auto finish = [this] { m_delegate.applicationDidFinishLaunching(); };
    if (m_isHidden)
        m_windows.launchHidden(finish);
    else
        finish();
    const auto tell = [this](std::string_view line) { m_delegate.operations().log.tell(line); };
    if (!m_machine.settings.mending().empty())
        tell(m_machine.settings.mending());
    m_witnesses.tell(&RunWitness::launched);
    m_machine.tellCaptureWay(tell);
}

platform::TerminateReply DesktopApplication::letGo() {
    m_witnesses.tell(&RunWitness::aboutToQuit);
    const platform::TerminateReply reply = m_delegate.applicationShouldTerminate();
    m_machine.readerThread.wake();
    return reply;
}

void DesktopApplication::abandon() {
    if (!m_machine.lifecycle.isEnding())
        letGo();
    m_machine.readerThread.join();
    m_machine.lifecycle.abandon();
    m_machine.settings.write();
}

int DesktopApplication::run() {
    // Posted, since quitting can only end an event loop that already runs.
    m_machine.runLoop.post([this] {
        m_machine.lifecycle.launch({.didFinishLaunching = [this] { launch(); },
                                    .shouldTerminate = [this] { return letGo(); },
                                    .willTerminate =
                                        [this] {
                                            m_delegate.applicationWillTerminate();
                                            m_witnesses.tell(&RunWitness::ended);
                                        }});
    });
    return QApplication::exec();
}

int runDesktopApplication(const Options& options) {
    RunningInstance instance(options);
    // Must precede reading the settings: they belong to the running instance.
    if (const std::optional<int> status = giveWay(instance))
        return *status;
    return DesktopApplication(options, instance).run();
}

} // namespace glimra::desktop
