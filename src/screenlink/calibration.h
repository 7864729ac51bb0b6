#pragma once

#include "events/event_state.h"
#include "screenlink/strip_search.h"

namespace glimra::screenlink {

/// Fits the reading to the add-on's strip on this screen. The first command asks, the second runs the search.
/// Main thread.
class Calibration {
public:
    struct Parts {
        platform::RunLoop& runLoop;
        platform::ScreenCapture& capture;
        platform::Sounds& sounds;
        platform::ChildProcesses& childProcesses;
        platform::UserDefaults& defaults;
        platform::MessageLog& log;
        events::MessageState& messages;
        ScanSettings& settings;
        SharedStripGeometry& geometry;
    };

    explicit Calibration(const Parts& parts, platform::Duration searchTime = kSearchTime);

    /// The calibrate command. While a search runs it is ignored. The reader goes on with the old geometry
    /// until a search has succeeded.
    void calibrateScreen();
    bool isRunning() const { return m_running; }

private:
    void runSearch();
    void sayText(std::string_view text);

    Parts m;
    platform::Duration m_searchTime;
    bool m_running = false;
};

} // namespace glimra::screenlink
