#include "desktop/output_file.h"
#include "desktop/run_witness.h"
#include "platform/monotonic_clock.h"
#include "trace/traced_outlets.h"
#include "trace/traced_platform.h"

#include <cstdio>
#include <utility>

namespace glimra::desktop {

namespace {

class RunTracing final : public RunWitness {
public:
    RunTracing(const std::string& file, const platform::Platform& machine)
        : m_file(file),
          m_writer(platform::monotonicNow, [this](std::string_view line) { append(line); }),
          m_traced(machine, m_writer, [this](const platform::Window* window) {
              return m_nameOfWindow ? m_nameOfWindow(window) : std::string{};
          }) {}

    const platform::Platform& platform() const override { return m_traced.platform(); }

    void follow(app::AppDelegate& delegate, InterfaceBinder&) override {
        m_nameOfWindow = trace::windowNames(delegate.outlets());
        trace::traceOutlets(delegate.outlets(), m_writer);
    }
    void ended() override {
        m_writer.quit();
        m_isOver = true;
    }

private:
    void append(std::string_view line) {
        if (m_isOver)
            return;
        const std::string end = m_file.append(line);
        m_isOver = !end.empty();
        if (m_isOver)
            std::fprintf(stderr, "glimra: %s %s; the trace ends here\n", m_file.path().c_str(), end.c_str());
    }

    OutputFile m_file;
    /// Nothing more is written: the run has ended, or the file is full or broken.
    bool m_isOver = false;
    trace::TraceWriter m_writer;
    /// Empty until the windows exist.
    trace::TracedWindowSystem::WindowName m_nameOfWindow;
    trace::TracedPlatform m_traced;
};

} // namespace

std::unique_ptr<RunWitness> traceRun(const std::string& file, const platform::Platform& machine) {
    return std::make_unique<RunTracing>(file, machine);
}

} // namespace glimra::desktop
