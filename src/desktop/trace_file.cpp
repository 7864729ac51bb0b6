#include "desktop/trace_file.h"

#include "desktop/loop/qt_run_loop.h"
#include "platform/monotonic_clock.h"

namespace glimra::desktop {

TraceFile::TraceFile(const std::string& path)
    : m_file(path),
      m_writer(platform::monotonicNow, [this](std::string_view line) { append(line); }) {
}

void TraceFile::append(std::string_view line) {
    if (m_file.append(line) || m_isBroken)
        return;
    m_isBroken = true;
    std::fprintf(stderr, "glimra: can't write %s; the trace ends here\n", m_file.path().c_str());
}

} // namespace glimra::desktop
