#pragma once

#include <QString>

namespace glimra::desktop {

/// The folder for settings in the XDG configuration folder; it may not exist yet. Qt knows paths only as
/// text: where the folder's name is no UTF-8, the folder is created, and the path leads to it through /proc.
QString configFolder();

} // namespace glimra::desktop
