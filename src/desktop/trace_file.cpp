#include "desktop/trace_file.h"

#include "desktop/qt_run_loop.h"

#include <cerrno>
#include <system_error>

namespace glimra::desktop {

TraceFile::TraceFile(const std::string& path)
    : m_path(path),
      m_file(std::fopen(path.c_str(), "we")),
      m_writer(QtRunLoop::monotonicNow, [this](std::string_view line) { append(line); }) {
    if (!m_file)
        throw std::system_error(errno, std::generic_category(), path);
}

void TraceFile::append(std::string_view line) {
    if (!m_file)
        return;
    const bool written = std::fwrite(line.data(), 1, line.size(), m_file.get()) == line.size();
    if (written && std::fflush(m_file.get()) == 0)
        return;
    std::fprintf(stderr, "glimra: can't write %s; the trace ends here\n", m_path.c_str());
    m_file.reset();
}

} // namespace glimra::desktop
