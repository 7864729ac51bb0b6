#pragma once

#include <QIcon>

namespace glimra::desktop {

/// The application's icon: a lit key.
QIcon applicationIcon();

} // namespace glimra::desktop
