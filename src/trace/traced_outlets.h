#pragma once

#include "app/outlets.h"
#include "trace/trace_writer.h"

#include <functional>
#include <string>

namespace glimra::trace {

/// Writes a line whenever a window appears or disappears and for each write to the message log. `writer` must
/// exist as long as the outlets can change.
void traceOutlets(app::Outlets& outlets, TraceWriter& writer);

/// Returns a function that gives a window's outlet name; empty for a window that is no outlet.
std::function<std::string(const platform::Window* window)> windowNames(app::Outlets& outlets);

} // namespace glimra::trace
