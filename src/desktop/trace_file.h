#pragma once

#include "trace/trace_writer.h"

#include <cstdio>
#include <memory>
#include <string>

namespace glimra::desktop {

/// A trace that goes to a file, each line as it happens; `t` counts as CLOCK_MONOTONIC does.
class TraceFile {
public:
    /// Begins the file anew. Throws std::system_error when it cannot be written.
    explicit TraceFile(const std::string& path);

    trace::TraceWriter& writer() { return m_writer; }

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    void append(std::string_view line);

    std::string m_path;
    std::unique_ptr<std::FILE, Close> m_file;
    trace::TraceWriter m_writer;
};

} // namespace glimra::desktop
