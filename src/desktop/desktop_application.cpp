#include "desktop/desktop_application.h"

#include "app/app_delegate.h"
#include "app/message_log.h"
#include "desktop/desktop_platform.h"
#include "desktop/loop/quit_signals.h"
#include "desktop/output_file.h"
#include "desktop/running_instance.h"
#include "desktop/trace_file.h"
#include "desktop/windows/theme.h"
#include "desktop/windows/tray.h"
#include "desktop/windows/windows.h"
#include "platform/monotonic_clock.h"
#include "recording/recorded_platform.h"
#include "trace/traced_outlets.h"
#include "trace/traced_platform.h"

#include <QApplication>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>
#include <thread>
#include <utility>

namespace glimra::desktop {

namespace {

constexpr std::string_view kEndStaleEffectsKey = "endStaleEffects";

void printLog(platform::TextView& log) {
    log.replaced.observe([](std::size_t, std::size_t, std::string_view addition) {
        std::fwrite(addition.data(), 1, addition.size(), stdout);
        std::fflush(stdout);
    });
}

/// The trace, where one is asked for: its file, and the platform that writes to it.
struct Tracing {
    Tracing(const std::string& path, const platform::Platform& traced)
        : file(path),
          platform(traced, file.writer(), [this](const platform::Window* window) {
              return nameOfWindow ? nameOfWindow(window) : std::string{};
          }) {}

    void follow(app::Outlets& outlets) {
        nameOfWindow = trace::windowNames(outlets);
        trace::traceOutlets(outlets, file.writer());
    }

    /// The outlets have their names, but they come after the platform.
    trace::TracedWindowSystem::WindowName nameOfWindow;
    TraceFile file;
    trace::TracedPlatform platform;
};

/// The recording, where one is asked for: its file, and the platform of which it tells.
struct Recording {
    Recording(const std::string& path, const platform::Platform& recorded)
        : file(path),
          recorder(
              platform::monotonicNow, [this](std::string_view lines) { return file.append(lines); },
              [this](const std::string& why) { tell(why + " It is in " + file.path() + "."); }),
          platform(recorded, recorder) {}

    void follow(InterfaceBinder& binder, app::Outlets& outlets, std::function<void(std::string_view)> say) {
        tell = std::move(say);
        platform.follow(outlets);
        binder.aboutToSend.observe([this](const app::ActionRow& action, const app::ActionArgument& argument) {
            recorder.beginAction(action, argument);
        });
        binder.sent.observe([this] { recorder.endAction(); });
    }

    std::function<void(std::string_view)> tell = [](std::string_view) {};
    OutputFile file;
    recording::ScriptRecorder recorder;
    recording::RecordedPlatform platform;
};

/// Says what the machine's services cannot do: once, to whoever turns debug mode on.
void tellNotes(DesktopPlatform& machine, app::Outlets& outlets, const app::AppDelegate& delegate) {
    outlets.debugMenuItem.on.changed.observe([&](bool debugMode) {
        if (!debugMode)
            return;
        // Behind the lines that debug mode begins with.
        machine.runLoop.post([&] {
            for (const std::string& note : std::exchange(machine.notes, {}))
                if (delegate.state().log.debugMode)
                    outlets.myTextScroll.insertAtSelection(note + "\n");
        });
    });
}

/// What another start of the program asks, but for quitting.
void perform(const InstanceCommand& command, InterfaceBinder& binder, app::AppDelegate& delegate,
             recording::ScriptRecorder* recorder) {
    if (command.kind == InstanceCommand::Kind::BringToFront) {
        delegate.outlets().mainWindow.bringToFront();
    } else if (command.kind == InstanceCommand::Kind::TestPattern) {
        binder.send("testLightsMI:");
    } else if (command.kind == InstanceCommand::Kind::Profile) {
        // As the game asks for it.
        const std::string token = std::to_string(command.profile);
        if (recorder != nullptr)
            recorder->token(token);
        delegate.operations().messageQueue.appendToMessageQueue(token);
    }
}

/// How long the one that runs may take to answer, or to be gone when it is quitting.
constexpr auto kPatience = std::chrono::seconds(3);
constexpr auto kPause = std::chrono::milliseconds(50);

/// Becomes the running one. When there is one already, brings its windows to the front and returns the
/// program's exit status.
std::optional<int> giveWay(RunningInstance& instance, const InstanceChannel::Handler& handler) {
    const platform::Time deadline = platform::monotonicNow() + kPatience;
    while (!instance.claim(handler)) {
        if (instance.send({InstanceCommand::Kind::BringToFront})) {
            std::fputs("Glimra is running already; its windows come to the front.\n", stderr);
            return EXIT_SUCCESS;
        }
        if (platform::monotonicNow() > deadline) {
            std::fputs("glimra: Glimra is running already, but does not answer.\n", stderr);
            return EXIT_FAILURE;
        }
        std::this_thread::sleep_for(kPause);
    }
    return std::nullopt;
}

} // namespace

int runDesktopApplication(const Options& options) {
    InstanceChannel::Handler obey;
    RunningInstance instance(options);
    // Before the settings are read: they belong to the one that runs.
    if (const std::optional<int> status =
            giveWay(instance, [&obey](const InstanceCommand& command) { return obey && obey(command); }))
        return *status;
    DesktopPlatform machine(options);
    if (!machine.settings.get(kEndStaleEffectsKey))
        machine.settings.set(kEndStaleEffectsKey, true);

    platform::Platform plain = machine.platform();
    std::optional<Recording> recording;
    if (options.recordFile)
        recording.emplace(*options.recordFile, plain);
    platform::Platform& untraced = recording ? recording->platform.platform() : plain;
    std::optional<Tracing> tracing;
    if (options.traceFile)
        tracing.emplace(*options.traceFile, untraced);

    app::AppDelegate delegate(tracing ? tracing->platform.platform() : untraced);
    app::Outlets& outlets = delegate.outlets();
    const auto tell = [&delegate](std::string_view line) { delegate.operations().log.tell(line); };
    tellNotes(machine, outlets, delegate);
    machine.told.observe(tell);
    machine.workspace.told.observe(tell);
    machine.keyboard.told.observe(tell);
    machine.settings.told.observe(tell);
    if (options.printLog)
        printLog(outlets.myTextScroll);
    if (tracing)
        tracing->follow(outlets);

    const auto quit = [&machine] { machine.lifecycle.terminate(); };
    const DesktopTheme theme;
    Windows windows(
        {.delegate = delegate,
         .windowSystem = machine.windowSystem,
         .runLoop = machine.runLoop,
         .userDefaults = machine.settings,
         .keyboard = machine.keyboard.drawn(),
         .now = platform::monotonicNow,
         .quit = quit,
         .keyboardName = machine.keyboard.description,
         .keyboardChoice = {[&machine] { return machine.keyboard.chosen(); },
                            [&machine](const std::string& name) { machine.chooseKeyboard(name); }},
         .captureWay = [&machine] { return captureDescription(machine.readerCapture.state()); }});
    const Tray tray(windows.binder(), delegate, [&windows] { windows.quit(); });
    const QuitSignals quitSignals(quit);
    if (recording)
        recording->follow(windows.binder(), outlets, tell);

    obey = [&](const InstanceCommand& command) {
        if (machine.lifecycle.isEnding())
            return command.kind == InstanceCommand::Kind::Quit;
        machine.runLoop.post([&, command] {
            if (command.kind == InstanceCommand::Kind::Quit)
                quit();
            else
                perform(command, windows.binder(), delegate, recording ? &recording->recorder : nullptr);
        });
        return true;
    };

    // From inside the event loop, since quitting can only end one that runs.
    machine.runLoop.post([&] {
        machine.lifecycle.launch({
            .didFinishLaunching =
                [&] {
                    if (recording)
                        recording->recorder.launch(machine.settings,
                                                   machine.mainCapture.backingScaleFactor());
                    delegate.applicationDidFinishLaunching();
                    if (!machine.settings.mending().empty())
                        tell(machine.settings.mending());
                    if (recording)
                        recording->recorder.launched();
                    machine.tellCaptureWay(tell);
                },
            .shouldTerminate =
                [&] {
                    if (recording)
                        recording->recorder.quit();
                    const platform::TerminateReply reply = delegate.applicationShouldTerminate();
                    machine.readerThread.wake();
                    return reply;
                },
            .willTerminate =
                [&] {
                    delegate.applicationWillTerminate();
                    if (tracing)
                        tracing->file.writer().quit();
                },
        });
    });
    const int status = QApplication::exec();
    obey = nullptr;
    // The reader is part of the delegate.
    machine.readerThread.join();
    return status;
}

} // namespace glimra::desktop
