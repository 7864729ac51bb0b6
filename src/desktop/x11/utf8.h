#pragma once

#include <string>
#include <string_view>

namespace glimra::desktop {

/// `bytes` as valid UTF-8. Each maximal part of an invalid character is replaced by U+FFFD (Unicode Standard,
/// section 3.9).
std::string validUtf8(std::string_view bytes);

} // namespace glimra::desktop
