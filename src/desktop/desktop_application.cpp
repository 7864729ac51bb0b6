#include "desktop/desktop_application.h"

#include "desktop/windows/status_report.h"
#include "platform/monotonic_clock.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
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

/// What the running instance without windows says when it is to show them.
constexpr std::string_view kNoWindow = "no window";

/// Makes this the running instance. If there already is one, brings its windows to the front and returns the
/// program's exit status; one without windows makes room for one with windows.
std::optional<int> giveWay(RunningInstance& instance, bool hasWindows) {
    using Kind = InstanceCommand::Kind;
    const platform::Time deadline = platform::monotonicNow() + kPatience;
    while (!instance.claim()) {
        const InstanceAnswer answer =
            instance.send({hasWindows ? Kind::BringToFront : Kind::Status}).value_or(InstanceAnswer{});
        if (answer.isAccepted) {
            std::fprintf(stderr, "Glimra is running already%s\n",
                         hasWindows ? "; its windows come to the front." : ".");
            return EXIT_SUCCESS;
        }
        if (answer.text == kNoWindow)
            instance.send({Kind::Quit});
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

/// What a command sends, as a menu item or button would.
struct SentCommand {
    InstanceCommand::Kind kind;
    std::string_view selector;
    bool hasState = false;
};
constexpr std::array<SentCommand, 6> kSentCommands{{
    {InstanceCommand::Kind::TestPattern, "testLightsMI:"},
    {InstanceCommand::Kind::Reset, "resetLightsMI:"},
    {InstanceCommand::Kind::Calibrate, "calibrateMI:"},
    {InstanceCommand::Kind::Debug, "debugMenuItem:"},
    {InstanceCommand::Kind::FastResponse, "fastResponseMI:", true},
    {InstanceCommand::Kind::EndStaleEffects, "endStaleEffectsMI:", true},
}};

} // namespace

DesktopApplication::DesktopApplication(const Options& options, RunningInstance& instance)
    : m_instance(instance),
      m_keyboardIsGiven(options.keyboard.has_value()),
      m_machine(options),
      m_witnesses(options, m_machine.platform()),
      m_delegate(m_witnesses.platform()),
      m_interface((options.noWindow ? makeBareInterface
                                    : makeWindows)({options, m_machine, m_delegate, [this] { quit(); },
                                                    [this](std::string_view token) { sendToken(token); }})),
      m_quitRequests([this] { quit(); }),
      m_exitGuard([this] { abandon(); }) {
    if (options.printLog)
        printLog(m_delegate.outlets().myTextScroll);
    m_witnesses.tell(&RunWitness::follow, m_delegate, m_interface->binder());
    tellTheLog();
    followCalibration();
    m_instance.obey([this](const InstanceCommand& command) { return take(command); });
}

DesktopApplication::~DesktopApplication() {
    m_instance.obey(nullptr);
    // The reader's thread uses the delegate, which is destroyed before it.
    m_machine.readerThread.join();
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

InstanceAnswer DesktopApplication::take(const InstanceCommand& command) {
    using Kind = InstanceCommand::Kind;
    if (m_machine.lifecycle.isEnding())
        return {command.kind == Kind::Quit};
    switch (command.kind) {
    case Kind::Status:
        return {true, status(command.number == 1)};
    case Kind::Reload:
        return reload();
    case Kind::BringToFront:
        if (!m_interface->bringToFront())
            return {false, std::string(kNoWindow)};
        return {true};
    default:
        m_machine.runLoop.post([this, command] { perform(command); });
        return {true};
    }
}

void DesktopApplication::perform(const InstanceCommand& command) {
    if (command.kind == InstanceCommand::Kind::Quit)
        return quit();
    // The same path that the game's request for a profile takes.
    if (command.kind == InstanceCommand::Kind::Profile)
        return sendToken(std::to_string(command.number));
    const auto row = std::ranges::find(kSentCommands, command.kind, &SentCommand::kind);
    m_interface->binder().send(row->selector, row->hasState ? app::ActionArgument(command.number == 1)
                                                            : app::ActionArgument());
}

InstanceAnswer DesktopApplication::reload() {
    if (std::string problem = m_machine.settings.reload(); !problem.empty())
        return {false, std::move(problem)};
    if (!m_delegate.takeChangedSettings())
        return {false, "Some settings are being edited. Close Set Colors, Map Action Keys or the dialog for "
                       "the game's names, and try again."};
    m_machine.takeChangedSettings(m_keyboardIsGiven);
    m_interface->takeChangedSettings();
    sendToken(std::to_string(m_delegate.state().profile.activeColorProfile));
    return {true};
}

std::string DesktopApplication::status(bool asJson) {
    const StatusSnapshot& now = m_interface->look();
    const ProfileNames names(m_machine.settings);
    return (asJson ? statusAsJson : statusInWords)(now, names).toStdString();
}

void DesktopApplication::sendToken(std::string_view token) {
    m_witnesses.tell(&RunWitness::token, token);
    m_delegate.operations().messageQueue.appendToMessageQueue(token);
}

void DesktopApplication::launch() {
    m_witnesses.tell(&RunWitness::aboutToLaunch);
    m_interface->launch([this] { m_delegate.applicationDidFinishLaunching(); });
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
    return QCoreApplication::exec();
}

int runDesktopApplication(const Options& options) {
    RunningInstance instance(options);
    // Must precede reading the settings: they belong to the running instance.
    if (const std::optional<int> status = giveWay(instance, !options.noWindow))
        return *status;
    return DesktopApplication(options, instance).run();
}

} // namespace glimra::desktop
