#pragma once

#include "keyboards/model/keyboard_model.h"

#include <string>

namespace glimra::tools {

/// The keyboard as text of 113 columns in 24-bit terminal colours, with line ends.
std::string drawOnTerminal(const keyboards::KeyColors& colors);

} // namespace glimra::tools
