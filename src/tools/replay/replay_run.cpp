#include "tools/replay/replay_run.h"

#include "app/built_bundle.h"
#include "tools/replay/modal_setting.h"
#include "tools/replay/state_dump.h"
#include "trace/traced_outlets.h"

#include <nlohmann/json.hpp>

#include <stdexcept>

namespace glimra::tools {

namespace {

constexpr platform::Duration kFrameOfToken = std::chrono::milliseconds(100);
/// Much longer than the reader takes to leave.
constexpr platform::Duration kLongestQuit = std::chrono::seconds(10);

/// As built, and with the framework that belongs to the simulated keyboard's version.
platform::Bundle bundle() {
    platform::Bundle built = app::builtBundle();
    built.ledFrameworkVersion = "9.0.0";
    return built;
}

} // namespace

ReplayRun::ReplayRun(const Options& options, trace::TraceWriter::Sink sink)
    : m_outside(options.seed),
      m_keyboard([this] { return now(); }),
      m_writer([this] { return now(); }, std::move(sink), options.kinds),
      m_traced(m_outside.platform(m_keyboard, bundle()), m_writer,
               [this](const platform::Window* window) {
                   return trace::windowNames(m_delegate.outlets())(window);
               }),
      m_delegate(m_traced.platform()),
      m_canvasDisplay(m_outside.runLoop, m_delegate.outlets().keyboardCanvas,
                      m_delegate.outlets().colorProgrammerWindow, [this] {
                          // Nobody sees the canvas.
                          m_delegate.operations().colorPainter.drawKeys(
                              [](std::size_t, const lighting::Color&) {});
                      }) {
    trace::traceOutlets(m_delegate.outlets(), m_writer);
    m_outside.application.setDelegate([this] { return m_delegate.applicationShouldTerminate(); },
                                      [this] {
                                          m_delegate.applicationWillTerminate();
                                          m_writer.quit();
                                      });
}

void ReplayRun::run(const Script& script) {
    for (const Command& command : script) {
        std::visit([this](const auto& arguments) { execute(arguments); }, command);
        if (hasEnded())
            return;
    }
}

void ReplayRun::advance(platform::Duration duration) {
    // Whether the application has ended is looked at after each command.
    static_cast<void>(m_outside.runLoop.runUntil(now() + duration));
}

void ReplayRun::execute(const SetDefault& command) {
    m_outside.userDefaults.set(command.key, command.value);
}

void ReplayRun::execute(const ConnectDisplay& command) {
    m_outside.screen.connectDisplay(command.width, command.height, command.scale);
}

void ReplayRun::execute(const DisconnectDisplay&) {
    m_outside.screen.disconnectDisplay();
}

void ReplayRun::execute(const SetStripGeometry& command) {
    m_outside.screen.setStripGeometry(command.left, command.width);
}

void ReplayRun::execute(const PaintStrip& command) {
    m_outside.screen.paintStrip(command.frame);
}

void ReplayRun::execute(const ShowToken& command) {
    const screenlink::TokenFrames frames = screenlink::encodeToken(command.token);
    for (const screenlink::StripFrame& frame : {frames.announce, frames.confirm}) {
        m_outside.screen.paintStrip(frame);
        advance(kFrameOfToken);
    }
    m_outside.screen.paintStrip(screenlink::kDarkFrame);
}

void ReplayRun::execute(const HandOverToken& command) {
    m_delegate.operations().messageQueue.appendToMessageQueue(command.token);
}

void ReplayRun::execute(const Start&) {
    m_delegate.applicationDidFinishLaunching();
}

void ReplayRun::execute(const Wait& command) {
    advance(command.duration);
}

void ReplayRun::execute(const SetFrontmost& command) {
    m_outside.workspace.setFrontmostApplication(command.application);
}

void ReplayRun::execute(PowerEvent event) {
    if (event == PowerEvent::Sleep)
        m_outside.workspace.sleep();
    else
        m_outside.workspace.wake();
}

void ReplayRun::execute(const SetOptionKey& command) {
    m_outside.modifiers.setOptionKeyIsDown(command.down);
}

void ReplayRun::execute(const QueueAnswer& command) {
    simulated::ModalAnswer answer{command.code, {}};
    for (const ModalSetting& setting : command.settings)
        answer.settings.push_back([this, setting] { applySetting(m_delegate, setting); });
    m_outside.windowSystem.queueAnswer(std::move(answer));
}

void ReplayRun::execute(const QueuePath& command) {
    m_outside.windowSystem.queuePath(command.path);
}

void ReplayRun::execute(const PerformAction& command) {
    app::sendAction(m_delegate, *command.action, command.argument);
}

void ReplayRun::execute(const Quit&) {
    m_outside.application.terminate();
    advance(kLongestQuit);
    if (!hasEnded())
        throw std::logic_error("the application did not grant the request to terminate");
}

void ReplayRun::execute(const Dump& command) {
    if (!m_writer.wants(trace::TraceKind::Dump))
        return;
    const auto value = [&]() -> nlohmann::ordered_json {
        switch (command.kind) {
        case DumpKind::State:
            return dumpState(m_delegate.state());
        case DumpKind::Defaults:
            return dumpDefaults(m_outside.userDefaults);
        case DumpKind::Log:
            return m_delegate.outlets().myTextScroll.text;
        case DumpKind::Controls:
            return dumpControls(m_delegate.outlets());
        case DumpKind::Bitmap:
            return dumpBitmap(m_delegate.state(), command.profile);
        }
        return {};
    };
    m_writer.dump(command.what, value());
}

} // namespace glimra::tools
