#pragma once

#include "lighting/key_table.h"

#include <QString>

namespace glimra::desktop {

/// What a key is called in plain words; empty for an unknown one. The sign in some names is for the menus.
inline QString plainKeyName(lighting::KeyCode code) {
    const std::string_view name = lighting::displayNameOfKey(code).value_or("");
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()))
        .remove(QChar(0xA9))
        .simplified();
}

} // namespace glimra::desktop
