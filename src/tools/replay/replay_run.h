#pragma once

#include "app/app_delegate.h"
#include "simulated/canvas_display.h"
#include "simulated/simulated_platform.h"
#include "tools/replay/script.h"
#include "tools/replay/shown_keyboard.h"
#include "trace/trace_writer.h"
#include "trace/traced_platform.h"

#include <cstdint>

namespace glimra::tools {

/// One run of the application on the simulated machine, from before its launch.
class ReplayRun {
public:
    struct Options {
        /// Seed of everything that is random.
        std::uint32_t seed = 0;
        /// Kinds of line to write.
        trace::TraceKinds kinds = trace::TraceKinds::all();
    };

    /// `sink` gets each line with its line end.
    ReplayRun(const Options& options, trace::TraceWriter::Sink sink);

    ReplayRun(const ReplayRun&) = delete;
    ReplayRun& operator=(const ReplayRun&) = delete;

    /// Carries out the script, to its end or to that of the application. Once only.
    void run(const Script& script);

    platform::Time now() const { return m_outside.runLoop.now(); }
    ShownKeyboard& keyboard() { return m_keyboard; }

private:
    void execute(const SetDefault& command);
    void execute(const ConnectDisplay& command);
    void execute(const DisconnectDisplay& command);
    void execute(const SetStripGeometry& command);
    void execute(const PaintStrip& command);
    void execute(const ShowToken& command);
    void execute(const HandOverToken& command);
    void execute(const Start& command);
    void execute(const Wait& command);
    void execute(const SetFrontmost& command);
    void execute(PowerEvent event);
    void execute(const SetOptionKey& command);
    void execute(const QueueAnswer& command);
    void execute(const QueuePath& command);
    void execute(const PerformAction& command);
    void execute(const Quit& command);
    void execute(const Dump& command);

    bool hasEnded() const { return m_outside.runLoop.isTerminated(); }
    void advance(platform::Duration duration);

    simulated::SimulatedPlatform m_outside;
    ShownKeyboard m_keyboard;
    trace::TraceWriter m_writer;
    trace::TracedPlatform m_traced;
    app::AppDelegate m_delegate;
    simulated::CanvasDisplay m_canvasDisplay;
};

} // namespace glimra::tools
