#pragma once

#include "platform/message_log.h"
#include "platform/run_loop.h"
#include "platform/screen_capture.h"
#include "platform/system_services.h"
#include "platform/user_defaults.h"
#include "screenlink/scan_settings.h"
#include "screenlink/strip_geometry.h"

#include <optional>
#include <string_view>

namespace glimra::screenlink {

/// How long a search may take.
inline constexpr platform::Duration kSearchTime = std::chrono::seconds(90);

enum class SearchResult {
    Found,
    /// The time ran out.
    NotFound,
    /// The application terminated, or the search was canceled; nothing was stored.
    Interrupted,
};

/// What to tell the player when the time ran out.
enum class SearchFailure {
    /// The first cell was never red.
    NoRedCell,
    /// There was a red cell, but no width showed the whole pattern.
    NoPattern,
    /// The strip is wider than the search can measure: 188 points.
    TooWide,
};

/// One search for the strip, while the add-on shows its test pattern. It captures the screen again and again
/// on the main thread and lets the run loop work in between; a beep every two seconds tells the user that the
/// search goes on.
///
/// First it waits until the first cell is red, and measures that cell to find its middle. Then it tries one
/// width after another, and finds the smallest and the largest at which all eleven cells have the pattern's
/// colours.
class StripSearch {
public:
    struct Parts {
        platform::RunLoop& runLoop;
        platform::ScreenCapture& capture;
        platform::Sounds& sounds;
        platform::UserDefaults& defaults;
        /// Where debug lines go, or null.
        platform::MessageLog* debugLog;
        /// The search writes `scanOffset` half-way and `scanWidth` at its end; both are the factory's when it
        /// finds nothing.
        ScanSettings& settings;
        /// The search ends where this has become true.
        const bool& isCanceled;
    };

    StripSearch(const Parts& parts, platform::Duration searchTime);

    /// Runs the search and stores what it found, or zeros when it found nothing.
    SearchResult searchScanStrip();
    /// Why nothing was found, after a search whose time ran out.
    SearchFailure failure() const;

private:
    enum class Phase { LeftEdge, RightEdge, SmallestWidth, LargestWidth };

    [[nodiscard]] bool calibrationTick();
    bool deadlineHasPassed() const;
    std::optional<int> codeAt(int x, const platform::ScreenRect& rect);
    bool stripPatternMatches(float width, const platform::ScreenRect& rect);
    platform::ScreenRect stripRect(float width) const;
    void calibrationLog(std::string_view text);
    void timeOut(Phase phase);
    void logCells(float width, const platform::ScreenRect& rect);

    // The four phases. False or none: it was interrupted.
    [[nodiscard]] bool waitForRed();
    [[nodiscard]] std::optional<int> findRightEdge();
    [[nodiscard]] std::optional<float> findSmallestWidth();
    [[nodiscard]] std::optional<float> findLargestWidth(float smallest);
    int countRedRun();
    void chooseOffset(int rightEdge);
    SearchResult finish();

    Parts m_parts;
    platform::Duration m_searchTime;
    platform::Time m_deadline{};
    platform::Time m_nextBeep{};
    /// The phase in which the time ran out.
    std::optional<Phase> m_timedOutIn;
    int m_rightEdge = 0;
    /// The position that the second phase looked at last.
    int m_rightEdgeProbe = 0;
};

} // namespace glimra::screenlink
