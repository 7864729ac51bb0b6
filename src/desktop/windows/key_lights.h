#pragma once

#include "keyboards/model/keyboard_model.h"

#include <QImage>
#include <QRect>

#include <array>
#include <cstdint>
#include <vector>

namespace glimra::desktop {

/// Where one key's light falls: how much of it reaches each pixel of a rectangle, row by row, 255 for all.
struct KeyLight {
    QRect place;
    std::vector<std::uint8_t> strength;
};

using KeyLights = std::array<KeyLight, keyboards::kKeyCount>;

/// Lights a part of a picture: copies `part` from `dark`, and adds each key's light in its color. Both images
/// are of the same size and Format_RGB32. Adding is what light does, and what makes a new color cost no more
/// than the pixels that it reaches.
void paintLights(QImage& picture, const QImage& dark, const KeyLights& lights,
                 const keyboards::KeyColors& colors, const QRect& part);

} // namespace glimra::desktop
