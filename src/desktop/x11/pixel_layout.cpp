#include "desktop/x11/pixel_layout.h"

#include <bit>
#include <cstring>

namespace glimra::desktop {

namespace {

struct Visual {
    const xcb_visualtype_t* type = nullptr;
    std::uint8_t depth = 0;
};

Visual visualOf(const xcb_screen_t& screen, xcb_visualid_t id) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0; xcb_depth_next(&depths))
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0;
             xcb_visualtype_next(&visuals))
            if (visuals.data->visual_id == id)
                return {visuals.data, depths.data->depth};
    return {};
}

std::optional<std::size_t> bytesPerPixelOf(const xcb_setup_t& setup, std::uint8_t depth) {
    for (auto formats = xcb_setup_pixmap_formats_iterator(&setup); formats.rem > 0;
         xcb_format_next(&formats)) {
        const std::uint8_t bits = formats.data->bits_per_pixel;
        if (formats.data->depth == depth && (bits == 16 || bits == 24 || bits == 32))
            return bits / 8u;
    }
    return std::nullopt;
}

bool isNative(const PixelLayout& layout) {
    const bool littleEndian = layout.byteOrder == ByteOrder::LeastSignificantFirst;
    return layout.bytesPerPixel == 4 && littleEndian == (std::endian::native == std::endian::little);
}

} // namespace

std::optional<PixelLayout> pixelLayout(const xcb_setup_t& setup, const xcb_screen_t& screen,
                                       xcb_visualid_t visualId) {
    const auto [visual, depth] = visualOf(screen, visualId);
    const auto bytesPerPixel = bytesPerPixelOf(setup, depth);
    if (visual == nullptr || !bytesPerPixel)
        return std::nullopt;
    if (visual->_class != XCB_VISUAL_CLASS_TRUE_COLOR && visual->_class != XCB_VISUAL_CLASS_DIRECT_COLOR)
        return std::nullopt;
    if (visual->red_mask == 0 || visual->green_mask == 0 || visual->blue_mask == 0)
        return std::nullopt;
    return PixelLayout{{visual->red_mask, visual->green_mask, visual->blue_mask},
                       *bytesPerPixel,
                       setup.image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST ? ByteOrder::LeastSignificantFirst
                                                                           : ByteOrder::MostSignificantFirst};
}

std::optional<PixelLayout> rootPixelLayout(const xcb_setup_t& setup, const xcb_screen_t& screen) {
    return pixelLayout(setup, screen, screen.root_visual);
}

std::optional<std::vector<std::uint32_t>> unpackPixels(std::span<const std::uint8_t> bytes, std::size_t count,
                                                       const PixelLayout& layout) {
    if (bytes.size() / layout.bytesPerPixel < count)
        return std::nullopt;
    std::vector<std::uint32_t> pixels(count);
    if (count > 0 && isNative(layout)) {
        std::memcpy(pixels.data(), bytes.data(), count * sizeof(std::uint32_t));
        return pixels;
    }
    const bool littleEndian = layout.byteOrder == ByteOrder::LeastSignificantFirst;
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t b = 0; b < layout.bytesPerPixel; ++b) {
            const std::uint32_t byte = bytes[i * layout.bytesPerPixel + b];
            const std::size_t place = littleEndian ? b : layout.bytesPerPixel - 1 - b;
            pixels[i] |= byte << (8 * place);
        }
    return pixels;
}

} // namespace glimra::desktop
