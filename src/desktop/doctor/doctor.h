#pragma once

#include "desktop/options.h"

namespace glimra::desktop {

/// Prints, in the form that `options.doctor` names, what works here, what does not, and how to mend it.
/// Returns the program's exit status: 0 only if what the program is for could work. Needs an application
/// object; main thread.
int runDoctor(const Options& options);

} // namespace glimra::desktop
