#include "lighting/color_conversion.h"

namespace glimra::lighting {

namespace {

double limited(double component) {
    // Written so that NaN fails the first comparison.
    if (!(component > 0.0))
        return 0.0;
    return component < 1.0 ? component : 1.0;
}

} // namespace

Percentages toPercentages(const Color& color) {
    const auto percent = [](double component) { return static_cast<int>(limited(component) * 100.0); };
    return {percent(color.red), percent(color.green), percent(color.blue)};
}

Rgb toRgb(const Color& color) {
    const auto byte = [](double component) { return static_cast<std::uint8_t>(limited(component) * 255.0); };
    return {byte(color.red), byte(color.green), byte(color.blue)};
}

} // namespace glimra::lighting
