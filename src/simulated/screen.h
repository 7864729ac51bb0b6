#pragma once

#include "platform/screen_capture.h"

#include <array>
#include <cstddef>

namespace glimra::simulated {

/// The main display with the add-on's strip on its top edge. Points are counted from the top left corner. A
/// pixel belongs to the area that contains its centre; an area includes its left edge, but not its right one.
class SimulatedScreen {
public:
    static constexpr std::size_t kStripCells = 11;
    /// Colours as 0xRRGGBB.
    using StripCells = std::array<std::uint32_t, kStripCells>;

    /// Connects a new, black display: its size in points, and its device pixels per point. All are above 0.
    void connectDisplay(double width, double height, double scale);
    void disconnectDisplay();

    /// Position of the strips painted from now on, in points; the visible strip stays. `width` is above 0.
    void setStripGeometry(double left, double width);
    /// Erases the visible strip and paints a new one, one point high.
    void paintStrip(const StripCells& cells);

    bool hasDisplay() const { return m_scale > 0.0; }
    /// Device pixels per point; 1 without a display.
    double scale() const { return hasDisplay() ? m_scale : 1.0; }
    std::optional<platform::Image> capture(const platform::ScreenRect& rect) const;

private:
    struct Strip {
        double left = 0.0;
        double width = 80.0;
        StripCells cells{};
    };

    std::uint32_t stripPixel(double column) const;

    double m_width = 1920.0;
    double m_height = 1080.0;
    double m_scale = 1.0;
    /// Geometry of the next strip to paint.
    double m_nextLeft = 0.0;
    double m_nextWidth = 80.0;
    Strip m_shown;
};

class SimulatedCapture final : public platform::ScreenCapture {
public:
    explicit SimulatedCapture(const SimulatedScreen& screen) : m_screen(screen) {}

    int activeDisplayCount() override { return m_screen.hasDisplay() ? 1 : 0; }
    std::optional<platform::Image> capture(const platform::ScreenRect& rect) override {
        return m_screen.capture(rect);
    }
    double backingScaleFactor() override { return m_screen.scale(); }

private:
    const SimulatedScreen& m_screen;
};

} // namespace glimra::simulated
