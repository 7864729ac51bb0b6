#pragma once

#include <QString>

namespace glimra::desktop {

/// As it begins a sentence.
inline QString capitalized(QString text) {
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text;
}

} // namespace glimra::desktop
