#include "app/palette_check.h"

#include "lighting/led_bitmap.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace glimra::app {

namespace {

/// Below this, two keys across a keyboard look alike at a glance.
constexpr double kLeastDifference = 12.0;

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>;

Vector times(const Matrix& matrix, const Vector& v) {
    Vector result{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            result[row] += matrix[row][column] * v[column];
    return result;
}

/// On linear sRGB, for sight that lacks the cone altogether: Machado, Oliveira and Fernandes, "A
/// Physiologically-based Model for Simulation of Color Vision Deficiency", 2009.
const Matrix& simulation(ColorVision vision) {
    static constexpr Matrix common{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    static constexpr Matrix protan{
        {{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}};
    static constexpr Matrix deutan{
        {{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}};
    static constexpr Matrix tritan{
        {{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}};
    switch (vision) {
    case ColorVision::Protan:
        return protan;
    case ColorVision::Deutan:
        return deutan;
    case ColorVision::Tritan:
        return tritan;
    case ColorVision::Common:
        break;
    }
    return common;
}

double linear(double component) {
    const double limited = component > 0.0 ? std::min(component, 1.0) : 0.0;
    return limited <= 0.04045 ? limited / 12.92 : std::pow((limited + 0.055) / 1.055, 2.4);
}

Vector toLab(const Vector& linearRgb) {
    // sRGB to CIE XYZ, divided by the white point D65.
    static constexpr Matrix toXyz{{{0.412391 / 0.950456, 0.357584 / 0.950456, 0.180481 / 0.950456},
                                   {0.212639, 0.715169, 0.072192},
                                   {0.019331 / 1.089058, 0.119195 / 1.089058, 0.950532 / 1.089058}}};
    Vector f = times(toXyz, linearRgb);
    for (double& value : f) {
        constexpr double kEdge = 6.0 / 29.0;
        value = value > kEdge * kEdge * kEdge ? std::cbrt(value) : value / (3 * kEdge * kEdge) + 4.0 / 29.0;
    }
    return {116 * f[1] - 16, 500 * (f[0] - f[1]), 200 * (f[1] - f[2])};
}

Vector seen(const platform::Color& color, ColorVision vision) {
    Vector rgb = times(simulation(vision), {linear(color.red), linear(color.green), linear(color.blue)});
    for (double& component : rgb)
        component = std::clamp(component, 0.0, 1.0);
    return toLab(rgb);
}

} // namespace

double visibleDifference(const platform::Color& a, const platform::Color& b, ColorVision vision) {
    const Vector first = seen(a, vision);
    const Vector second = seen(b, vision);
    return std::hypot(first[0] - second[0], first[1] - second[1], first[2] - second[2]);
}

std::vector<PaletteWarning> checkPalette(std::span<const lighting::Color> colors, const lighting::KeyMap& map,
                                         const profiles::ActionKeyMap& actionKeys) {
    if (colors.size() < lighting::kColorSlotCount)
        return {};
    std::set<int> slots;
    for (const profiles::ActionSlot& action : profiles::actionSlots()) {
        const lighting::KeyCode key = profiles::keyOfSlot(actionKeys, action);
        if (key != lighting::kNoKey && key < map.size())
            slots.insert(static_cast<int>(map[key]));
    }
    std::vector<PaletteWarning> warnings;
    for (const int slot : slots) {
        if (slot < 0 || slot >= static_cast<int>(colors.size()))
            continue;
        for (const ColorVision vision : kColorVisions)
            if (visibleDifference(colors[static_cast<std::size_t>(slot)], colors[lighting::kCooldownSlot],
                                  vision) < kLeastDifference) {
                warnings.push_back({slot, vision});
                break;
            }
    }
    return warnings;
}

std::string_view describe(ColorVision vision) {
    switch (vision) {
    case ColorVision::Protan:
        return "without the sense for red (protanopia)";
    case ColorVision::Deutan:
        return "without the sense for green (deuteranopia)";
    case ColorVision::Tritan:
        return "without the sense for blue (tritanopia)";
    case ColorVision::Common:
        break;
    }
    return "for anybody";
}

} // namespace glimra::app
