#pragma once

#include "app/message_log.h"
#include "screenlink/message_queue.h"
#include "screenlink/screen_reader.h"
#include "screenlink/strip_geometry.h"

namespace glimra::app {

/// What helps to find out whether everything works: the log's debug lines, and a pattern on the keyboard.
/// Main thread.
class Diagnostics {
public:
    struct Parts {
        MessageLog& log;
        screenlink::MessageQueue& queue;
        platform::MenuItem& debugMenuItem;
        LogState& logState;
        events::MessageState& messages;
        const screenlink::SharedStripGeometry& geometry;
        screenlink::ScreenReader& reader;
    };

    explicit Diagnostics(const Parts& parts) : m_parts(parts) {}

    void toggleDebugMode();
    void showTestPattern();

private:
    Parts m_parts;
};

} // namespace glimra::app
