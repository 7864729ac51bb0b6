#include "tools/picture/picture_files.h"

#include <png.h>

#include <array>
#include <stdexcept>

namespace glimra::tools {

void writePng(const std::string& path, const Picture& picture) {
    constexpr std::size_t kChannels = 3;
    std::array<png_byte, kChannels * 256> colors{};
    auto* next = colors.data();
    for (const lighting::Rgb& color : picture.palette) {
        *next++ = color.red;
        *next++ = color.green;
        *next++ = color.blue;
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_RGB_COLORMAP;
    image.colormap_entries = static_cast<png_uint_32>(picture.palette.size());
    if (png_image_write_to_file(&image, path.c_str(), 0, picture.pixels.data(), picture.width,
                                colors.data()) == 0)
        throw std::runtime_error(path + ": " + image.message);
}

} // namespace glimra::tools
