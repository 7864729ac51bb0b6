#pragma once

#include <QIcon>

namespace glimra::desktop {

/// The application's icon, a lit key, in the sizes of title bars, task bars and trays. Each call decodes its
/// pictures; what is there already is `QGuiApplication::windowIcon`, which all windows have.
QIcon applicationIcon();

} // namespace glimra::desktop
