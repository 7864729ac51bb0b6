#pragma once

#include "platform/screen_capture.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace glimra::desktop {

enum class ByteOrder { LeastSignificantFirst, MostSignificantFirst };

/// How a server encodes the pixels of a row.
struct PixelLayout {
    platform::PixelFormat format;
    /// 2, 3 or 4.
    std::size_t bytesPerPixel = 4;
    ByteOrder byteOrder = ByteOrder::LeastSignificantFirst;
};

/// The layout of images of windows with this visual; none when their pixels do not hold red, green and blue
/// in separate bits.
std::optional<PixelLayout> pixelLayout(const xcb_setup_t& setup, const xcb_screen_t& screen,
                                       xcb_visualid_t visual);
/// The layout for the root window.
std::optional<PixelLayout> rootPixelLayout(const xcb_setup_t& setup, const xcb_screen_t& screen);

/// Decodes `count` pixels from the beginning of `bytes`; none when there are fewer.
std::optional<std::vector<std::uint32_t>> unpackPixels(std::span<const std::uint8_t> bytes, std::size_t count,
                                                       const PixelLayout& layout);

} // namespace glimra::desktop
