#pragma once

#include "lighting/key_table.h"

#include <QKeyEvent>

#include <optional>

namespace glimra::desktop {

/// The key of the real keyboard that an event is about, whatever character it means; none for a key that the
/// key table does not know.
std::optional<lighting::KeyCode> physicalKey(const QKeyEvent& event);

} // namespace glimra::desktop
