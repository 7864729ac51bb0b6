#pragma once

#include "events/event_state.h"
#include "platform/controls.h"
#include "screenlink/strip_search.h"

namespace glimra::screenlink {

/// Finds the add-on's strip on the screen, so that the reader looks at the right place. The first calibrate
/// command only asks whether it is meant; the second one searches. Main thread.
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

    /// The calibrate command. It is ignored while a search runs. The reader uses the old geometry until a
    /// search has succeeded.
    void calibrateScreen();
    bool isRunning() const { return m_running; }
    /// Ends a search soon, and leaves everything as it was before.
    void cancel() { m_isCanceled = true; }

    /// Why the last search has failed; none while one runs, after one that succeeded, and before the first.
    platform::Property<std::optional<SearchFailure>> failure;
    /// The strip was found, and is read from now on.
    platform::Signal<> succeeded;

private:
    void runSearch();
    void endCanceled();
    void sayText(std::string_view text);

    Parts m_parts;
    platform::Duration m_searchTime;
    bool m_running = false;
    bool m_isCanceled = false;
};

} // namespace glimra::screenlink
