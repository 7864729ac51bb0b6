#pragma once

#include "tools/replay/line_cursor.h"
#include "tools/replay/script.h"

namespace glimra::tools {

/// Reads one line, which must not be blank. Throws LineError.
Command parseCommand(std::string_view line);

} // namespace glimra::tools
