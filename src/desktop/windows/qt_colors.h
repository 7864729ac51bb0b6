#pragma once

#include "platform/color.h"

#include <QColor>

namespace glimra::desktop {

// Between the application's colours and Qt's. Qt's are taken byte by byte: that is what a user can choose,
// and it stays a short number in the settings.

inline QColor toQColor(const platform::Color& color) {
    const auto limited = [](double component) {
        return component > 0.0 ? static_cast<float>(component < 1.0 ? component : 1.0) : 0.0F;
    };
    return QColor::fromRgbF(limited(color.red), limited(color.green), limited(color.blue));
}

inline platform::Color fromQColor(const QColor& color) {
    return {color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0};
}

} // namespace glimra::desktop
