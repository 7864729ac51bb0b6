#pragma once

#include <string>
#include <string_view>

namespace glimra::desktop {

/// `bytes` as valid UTF-8: whatever is none is replaced by U+FFFD, one for each maximal part of a character
/// (Unicode Standard, section 3.9).
std::string validUtf8(std::string_view bytes);

} // namespace glimra::desktop
