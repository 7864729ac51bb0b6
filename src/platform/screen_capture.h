#pragma once

#include "platform/color.h"

#include <bit>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace glimra::platform {

/// A rectangle in points, origin at the top left corner of the main display.
struct ScreenRect {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 1.0;

    friend bool operator==(const ScreenRect&, const ScreenRect&) = default;
};

/// Bit masks of the colour channels in a pixel: 8 bits each at depth 24 and 32, 10 bits at depth 30. No mask
/// is 0.
struct PixelFormat {
    std::uint32_t redMask = 0xFF0000;
    std::uint32_t greenMask = 0x00FF00;
    std::uint32_t blueMask = 0x0000FF;
};

/// A view of one row of device pixels.
struct ImageView {
    std::span<const std::uint32_t> pixels;
    PixelFormat format;
    /// Distance of the first pixel from the captured rectangle's left edge, in pixels. Above 0 when the
    /// rectangle begins left of the screen.
    int firstColumn = 0;

    /// The pixel at distance `x` from the rectangle's left edge; none when it was not captured.
    std::optional<std::uint32_t> pixelAt(int x) const {
        const auto index = static_cast<std::int64_t>(x) - firstColumn;
        if (index < 0 || index >= static_cast<std::int64_t>(pixels.size()))
            return std::nullopt;
        return pixels[static_cast<std::size_t>(index)];
    }
    /// That pixel as a colour.
    std::optional<Color> colorAt(int x) const {
        const std::optional<std::uint32_t> pixel = pixelAt(x);
        if (!pixel)
            return std::nullopt;
        const auto component = [&pixel](std::uint32_t mask) {
            const int shift = std::countr_zero(mask);
            return static_cast<double>((*pixel & mask) >> shift) / static_cast<double>(mask >> shift);
        };
        return Color{component(format.redMask), component(format.greenMask), component(format.blueMask)};
    }
};

/// One captured row, which owns its pixels.
struct Image {
    std::vector<std::uint32_t> pixels;
    PixelFormat format;
    int firstColumn = 0;

    ImageView view() const { return {pixels, format, firstColumn}; }
};

/// Captures pixels of the main display. Each object belongs to one thread; the reader and the main thread
/// have one each. A call takes at most one round trip to the display server.
class ScreenCapture {
public:
    virtual ~ScreenCapture() = default;

    /// The number of active displays; also 0 when it cannot be determined.
    virtual int activeDisplayCount() = 0;
    /// The first row of `rect` on the main display in device pixels, without the part that lies off the
    /// screen; none when nothing could be captured.
    virtual std::optional<Image> capture(const ScreenRect& rect) = 0;
    /// Device pixels per point of the main display.
    virtual double backingScaleFactor() = 0;
};

} // namespace glimra::platform
