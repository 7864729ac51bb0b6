#include "desktop/windows/key_caps.h"

#include <algorithm>
#include <cmath>

namespace glimra::desktop {

namespace {

using lighting::KeyRect;
using lighting::kKeyboardLayout;
using Lights = std::array<QRectF, kKeyboardLayout.size()>;

constexpr lighting::KeyCode kSpaceKey = 0x39;
constexpr lighting::KeyCode kLogoKey = 0x209;
constexpr lighting::KeyCode kBadgeKey = 0x20A;

/// The space bar's light is short; the bar reaches from Alt to Alt.
constexpr double kSpaceBarLeft = 177.0;
constexpr double kSpaceBarRight = 359.0;

/// Keys further apart belong to different blocks.
constexpr double kWidestGap = 16.0;
/// How far a cap reaches where its block ends.
constexpr double kBorder = 5.0;
/// Outer edges of a block that differ by no more than this are meant to be one line.
constexpr double kSameLine = 2.0;
/// Half the gap between two caps.
constexpr double kHalfGap = 1.2;
constexpr double kRadius = 4.5;
constexpr double kSkirt = 2.4;

QRectF lightOf(const KeyRect& key) {
    return {double(key.x), double(lighting::kKeyboardHeight - key.y - key.height), double(key.width),
            double(key.height)};
}

/// One of the four sides of a rectangle, as a coordinate that grows outwards, and the extent across.
struct Side {
    double (*outward)(const QRectF&);
    double (*opposite)(const QRectF&);
    bool isVertical;
};

constexpr std::array<Side, 4> kSides{{
    {[](const QRectF& r) { return -r.left(); }, [](const QRectF& r) { return -r.right(); }, false},
    {[](const QRectF& r) { return -r.top(); }, [](const QRectF& r) { return -r.bottom(); }, true},
    {[](const QRectF& r) { return r.right(); }, [](const QRectF& r) { return r.left(); }, false},
    {[](const QRectF& r) { return r.bottom(); }, [](const QRectF& r) { return r.top(); }, true},
}};

bool overlap(const QRectF& a, const QRectF& b, bool across) {
    return across ? std::min(a.right(), b.right()) - std::max(a.left(), b.left()) > 1.0
                  : std::min(a.bottom(), b.bottom()) - std::max(a.top(), b.top()) > 1.0;
}

/// Where a cap ends on one side, as an outward coordinate.
double edgeOf(const QRectF& key, const Lights& all, const Side& side) {
    const double own = side.outward(key);
    double gap = kWidestGap;
    bool hasNeighbor = false;
    double line = own;
    for (const QRectF& other : all) {
        const double away = side.opposite(other) - own;
        if (away >= 0.0 && away < gap && overlap(key, other, side.isVertical)) {
            gap = away;
            hasNeighbor = true;
        }
        if (std::abs(side.outward(other) - own) <= kSameLine)
            line = std::max(line, side.outward(other));
    }
    return hasNeighbor ? own + gap / 2 - kHalfGap : line + kBorder - kHalfGap;
}

KeyCap capOf(std::size_t index, const Lights& all) {
    const KeyRect& key = kKeyboardLayout[index];
    KeyCap cap{all[index], kRadius, lightOf(key)};
    if (key.code == kLogoKey || key.code == kBadgeKey) {
        cap.radius = std::min(key.width, key.height) / 2.0;
        return cap;
    }
    std::array<double, 4> edges{};
    std::transform(kSides.begin(), kSides.end(), edges.begin(),
                   [&](const Side& side) { return edgeOf(all[index], all, side); });
    cap.outline = QRectF(QPointF(-edges[0], -edges[1]), QPointF(edges[2], edges[3]));
    return cap;
}

} // namespace

QRectF KeyCap::face() const {
    return outline.adjusted(kSkirt, kSkirt * 0.7, -kSkirt, -kSkirt * 1.3);
}

double KeyCap::distanceTo(const QPointF& point) const {
    const QPointF away = point - outline.center();
    const double x = std::max(0.0, std::abs(away.x()) - outline.width() / 2 + radius);
    const double y = std::max(0.0, std::abs(away.y()) - outline.height() / 2 + radius);
    return std::max(0.0, std::hypot(x, y) - radius);
}

const std::array<KeyCap, kKeyboardLayout.size()>& keyCaps() {
    static const auto caps = [] {
        Lights lights;
        std::transform(kKeyboardLayout.begin(), kKeyboardLayout.end(), lights.begin(), lightOf);
        for (std::size_t index = 0; index < lights.size(); ++index)
            if (kKeyboardLayout[index].code == kSpaceKey) {
                lights[index].setLeft(kSpaceBarLeft);
                lights[index].setRight(kSpaceBarRight);
            }
        std::array<KeyCap, kKeyboardLayout.size()> made;
        for (std::size_t index = 0; index < made.size(); ++index)
            made[index] = capOf(index, lights);
        return made;
    }();
    return caps;
}

} // namespace glimra::desktop
