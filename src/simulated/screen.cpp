#include "simulated/screen.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace glimra::simulated {

namespace {

/// Pixel columns (or rows) whose centres lie in an interval of points: from `first` to before `end`. They may
/// exceed the range of integers.
struct PixelRange {
    double first;
    double end;
};

PixelRange pixelsIn(double start, double length, double scale) {
    return {std::ceil(start * scale - 0.5), std::ceil((start + length) * scale - 0.5)};
}

/// The part of a range that is on a screen of `size` points width (or height).
PixelRange onScreen(const PixelRange& range, double size, double scale) {
    const PixelRange screen = pixelsIn(0.0, size, scale);
    return {std::max(range.first, screen.first), std::min(range.end, screen.end)};
}

} // namespace

void SimulatedScreen::connectDisplay(double width, double height, double scale) {
    m_width = width;
    m_height = height;
    m_scale = scale;
    m_shown = {};
}

void SimulatedScreen::disconnectDisplay() {
    m_scale = 0.0;
    m_shown = {};
}

void SimulatedScreen::setStripGeometry(double left, double width) {
    m_nextLeft = left;
    m_nextWidth = width;
}

void SimulatedScreen::paintStrip(const StripCells& cells) {
    if (hasDisplay())
        m_shown = {m_nextLeft, m_nextWidth, cells};
}

std::optional<platform::Image> SimulatedScreen::capture(const platform::ScreenRect& rect) const {
    if (!hasDisplay())
        return std::nullopt;
    const PixelRange wanted = pixelsIn(rect.x, rect.width, m_scale);
    const PixelRange columns = onScreen(wanted, m_width, m_scale);
    const PixelRange rows = onScreen(pixelsIn(rect.y, rect.height, m_scale), m_height, m_scale);
    if (!(columns.first < columns.end && rows.first < rows.end))
        return std::nullopt;

    platform::Image image;
    constexpr double kFarthest = std::numeric_limits<int>::max();
    image.firstColumn = static_cast<int>(std::min(columns.first - wanted.first, kFarthest));
    image.pixels.resize(static_cast<std::size_t>(columns.end - columns.first), 0);
    const bool stripInRow = (rows.first + 0.5) / m_scale < 1.0;
    if (stripInRow)
        for (std::size_t i = 0; i < image.pixels.size(); ++i)
            image.pixels[i] = stripPixel(columns.first + static_cast<double>(i));
    return image;
}

std::uint32_t SimulatedScreen::stripPixel(double column) const {
    const double centre = (column + 0.5) / m_scale - m_shown.left;
    const double cell = std::floor(centre * static_cast<double>(kStripCells) / m_shown.width);
    if (!(cell >= 0.0 && cell < static_cast<double>(kStripCells)))
        return 0;
    return m_shown.cells[static_cast<std::size_t>(cell)];
}

} // namespace glimra::simulated
