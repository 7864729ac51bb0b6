#pragma once

#include "lighting/keyboard_layout.h"

#include <QRectF>

#include <array>
#include <cstddef>

namespace glimra::desktop {

/// A key cap as it is drawn, in points of the keyboard's layout, but with y downwards.
struct KeyCap {
    QRectF outline;
    double radius = 0.0;
    /// Where the light sits under the cap; in the middle of it but for the space bar.
    QRectF light;

    /// The flat top within the outline; the lower end of a cap catches less light than its upper.
    QRectF face() const;
    /// How far a point is from the outline; 0 inside.
    double distanceTo(const QPointF& point) const;
};

/// The caps of `lighting::kKeyboardLayout`, in its order. The layout's rectangles are where the light is,
/// with uneven spaces between them; a cap reaches half-way to its neighbors, so that rows are full. Caps do
/// not overlap, and each holds its key's rectangle.
const std::array<KeyCap, lighting::kKeyboardLayout.size()>& keyCaps();

} // namespace glimra::desktop
