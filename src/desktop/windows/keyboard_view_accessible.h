#pragma once

namespace glimra::desktop {

/// Lets assistive technology read which keys have which color on a `KeyboardView`, as its description: "red:
/// Q, W; black: all others". It is made when it is asked for. Repeated calls change nothing.
void installKeyboardViewAccessible();

} // namespace glimra::desktop
