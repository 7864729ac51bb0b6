#include "screenlink/strip_search.h"

#include "platform/decimal_text.h"
#include "platform/settings.h"
#include "screenlink/strip_decoder.h"

#include <string>

namespace glimra::screenlink {

namespace {

using platform::decimalText;

constexpr int kBlack = 0;
/// Shown in debug lines for a pixel without a colour.
constexpr int kNoCode = 999;

constexpr platform::ScreenRect kEdgeRect{0.0, 0.0, 25.0, 1.0};
constexpr float kWidthLimit = 200.0F;
constexpr float kRestartWidth = 11.0F;
constexpr platform::Duration kTick = std::chrono::milliseconds(25);
constexpr platform::Duration kFirstBeep = std::chrono::seconds(1);
constexpr platform::Duration kBeepPeriod = std::chrono::seconds(2);
constexpr std::string_view kBeep = "Tink";

} // namespace

StripSearch::StripSearch(const Parts& parts, platform::Duration searchTime)
    : m_parts(parts),
      m_searchTime(searchTime) {
}

SearchResult StripSearch::searchScanStrip() {
    m_nextBeep = m_parts.runLoop.now() + kFirstBeep;
    m_deadline = m_parts.runLoop.now() + m_searchTime;
    calibrationLog("CAL: timeout established at " + m_parts.runLoop.dateAndTime(m_deadline));
    calibrationLog("CAL: mainscreen backingScaleFactor is " +
                   decimalText(m_parts.capture.backingScaleFactor()));
    calibrationLog("CAL: phase 1 test rect: " + rectText(kEdgeRect));

    if (!waitForRed())
        return SearchResult::Interrupted;
    calibrationLog("CAL: dropped out of first loop with left edge equal to 0");

    const std::optional<int> rightEdge = findRightEdge();
    if (!rightEdge)
        return SearchResult::Interrupted;
    calibrationLog("CAL: dropped out of second loop with right edge equal to " + std::to_string(*rightEdge));
    m_rightEdge = *rightEdge;
    chooseOffset(*rightEdge);

    const std::optional<float> smallest = findSmallestWidth();
    if (!smallest)
        return SearchResult::Interrupted;
    calibrationLog("CAL: dropped out of third loop with min scan width equal to " + decimalText(*smallest));

    const std::optional<float> largest = findLargestWidth(*smallest);
    if (!largest)
        return SearchResult::Interrupted;
    calibrationLog("CAL: dropped out of forth loop with max scan width equal to " + decimalText(*largest));

    m_parts.settings.scanWidth = static_cast<double>((*smallest + *largest) * 0.5F);
    return finish();
}

bool StripSearch::waitForRed() {
    while (codeAt(0, kEdgeRect) != kRedBit) {
        if (deadlineHasPassed()) {
            timeOut(Phase::LeftEdge);
            break;
        }
        if (!calibrationTick())
            return false;
    }
    return true;
}

std::optional<int> StripSearch::findRightEdge() {
    for (m_rightEdgeProbe = 1;; ++m_rightEdgeProbe) {
        if (!calibrationTick())
            return std::nullopt;
        if (codeAt(m_rightEdgeProbe, kEdgeRect) == kBlack)
            break;
        if (deadlineHasPassed()) {
            timeOut(Phase::RightEdge);
            break;
        }
    }
    return deadlineHasPassed() ? m_rightEdgeProbe : countRedRun();
}

int StripSearch::countRedRun() {
    int x = 0;
    while (codeAt(x, kEdgeRect) == kRedBit)
        ++x;
    return x;
}

void StripSearch::chooseOffset(int rightEdge) {
    // The middle of the first cell, so that every sample is taken in the middle of its cell.
    m_parts.settings.scanOffset = (rightEdge - 1) / 2;
    calibrationLog("CAL: scanOffset is now: " + std::to_string(m_parts.settings.scanOffset));
    if (m_parts.settings.scanOffset <= 0) {
        m_parts.settings.scanOffset = 1;
        calibrationLog("CAL: **scanOffset adjusted to 1");
    }
}

std::optional<float> StripSearch::findSmallestWidth() {
    float width = static_cast<float>(m_parts.settings.scanOffset) * static_cast<float>(kCellCount);
    calibrationLog("CAL: scanning over range " + decimalText(width) + " \u2014 " + decimalText(kWidthLimit));
    while (true) {
        width += 1.0F;
        if (width >= kWidthLimit) {
            width = kRestartWidth;
            calibrationLog("CAL: restarted scan search over range " + decimalText(kRestartWidth) + " and " +
                           (m_rightEdgeProbe <= 11 ? "11" : "0"));
        }
        const platform::ScreenRect rect = stripRect(width);
        calibrationLog("CAL loop: looking over " + rectText(rect));
        logCells(width, rect);
        if (!calibrationTick())
            return std::nullopt;
        if (stripPatternMatches(width, rect))
            return width;
        if (deadlineHasPassed()) {
            timeOut(Phase::SmallestWidth);
            return width;
        }
    }
}

std::optional<float> StripSearch::findLargestWidth(float smallest) {
    float width = smallest;
    while (true) {
        width = width + 1.0F >= kWidthLimit ? smallest : width + 1.0F;
        const platform::ScreenRect rect = stripRect(width);
        if (!calibrationTick())
            return std::nullopt;
        if (!stripPatternMatches(width, rect))
            break;
        if (deadlineHasPassed()) {
            timeOut(Phase::LargestWidth);
            break;
        }
    }
    return width - 1.0F;
}

SearchResult StripSearch::finish() {
    const bool found = !deadlineHasPassed();
    m_parts.defaults.set(platform::settings::kScanWidth.key, found ? m_parts.settings.scanWidth : 0.0);
    m_parts.defaults.set(platform::settings::kScanOffset.key,
                         std::int64_t{found ? m_parts.settings.scanOffset : 0});
    if (found)
        return SearchResult::Found;
    m_parts.settings = factoryScanSettings();
    return SearchResult::NotFound;
}

SearchFailure StripSearch::failure() const {
    // Cells of this width make a strip that the third phase or the fourth cannot measure.
    constexpr int kWidestCell = 17;
    if (m_timedOutIn == Phase::LeftEdge)
        return SearchFailure::NoRedCell;
    // Beyond the last width the fourth phase begins again, until the time is over.
    const bool isTooWide = m_timedOutIn == Phase::LargestWidth || m_rightEdge > kWidestCell;
    return isTooWide ? SearchFailure::TooWide : SearchFailure::NoPattern;
}

bool StripSearch::calibrationTick() {
    if (!m_parts.runLoop.runUntil(m_parts.runLoop.now() + kTick) || m_parts.isCanceled)
        return false;
    if (m_parts.runLoop.now() >= m_nextBeep) {
        m_parts.sounds.play(kBeep);
        m_nextBeep += kBeepPeriod;
    }
    return true;
}

bool StripSearch::deadlineHasPassed() const {
    return m_parts.runLoop.now() >= m_deadline;
}

std::optional<int> StripSearch::codeAt(int x, const platform::ScreenRect& rect) {
    const std::optional<platform::Image> image = m_parts.capture.capture(rect);
    const std::optional<platform::Color> color = image ? image->view().colorAt(x) : std::nullopt;
    if (!color)
        return std::nullopt;
    return toCell(*color).colorCode();
}

bool StripSearch::stripPatternMatches(float width, const platform::ScreenRect& rect) {
    for (std::size_t i = 0; i < kTestPattern.size(); ++i)
        if (codeAt(cellPosition(i, width), rect) != kTestPattern[i])
            return false;
    return true;
}

platform::ScreenRect StripSearch::stripRect(float width) const {
    return {static_cast<double>(m_parts.settings.scanOffset), 0.0, static_cast<double>(width), 1.0};
}

void StripSearch::calibrationLog(std::string_view text) {
    if (m_parts.debugLog != nullptr)
        m_parts.debugLog->insertText(std::string(text) + "\n");
}

void StripSearch::timeOut(Phase phase) {
    if (!m_timedOutIn)
        m_timedOutIn = phase;
    calibrationLog("CAL: TIMED OUT!");
}

void StripSearch::logCells(float width, const platform::ScreenRect& rect) {
    for (std::size_t i = 0; i < kTestPattern.size(); ++i) {
        // The screen is captured also when nobody reads the line, so that debug mode does not change how
        // long a search takes.
        const int code = codeAt(cellPosition(i, width), rect).value_or(kNoCode);
        calibrationLog("CAL loop: test width " + decimalText(width) + ": detectedPixelColor at " +
                       std::to_string(i) + " was " + std::to_string(code));
    }
}

} // namespace glimra::screenlink
