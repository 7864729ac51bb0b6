#pragma once

#include "desktop/output_file.h"
#include "trace/trace_writer.h"

namespace glimra::desktop {

/// A trace that goes to a file, each line as it happens; `t` counts as CLOCK_MONOTONIC does.
class TraceFile {
public:
    /// Begins the file anew. Throws std::system_error when it cannot be written.
    explicit TraceFile(const std::string& path);

    trace::TraceWriter& writer() { return m_writer; }

private:
    void append(std::string_view line);

    OutputFile m_file;
    bool m_isBroken = false;
    trace::TraceWriter m_writer;
};

} // namespace glimra::desktop
