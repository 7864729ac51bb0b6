#pragma once

#include <QString>
#include <QWidget>

#include <vector>

namespace glimra::desktop {

/// The shortcuts of windows, a line each, under their titles.
QString shortcutList(const std::vector<const QWidget*>& windows);

} // namespace glimra::desktop
