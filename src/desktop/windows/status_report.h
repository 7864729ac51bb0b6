#pragma once

#include "desktop/windows/profile_names.h"
#include "desktop/windows/program_watch.h"

#include <QByteArray>

namespace glimra::desktop {

// What the status line and the marks tell, for somebody who asks on the command line. Both end with a line
// end.

/// Some lines for people, as UTF-8.
QByteArray statusInWords(const StatusSnapshot& snapshot, const ProfileNames& names);

/// One object for programs; its keys are in the manual page.
QByteArray statusAsJson(const StatusSnapshot& snapshot, const ProfileNames& names);

} // namespace glimra::desktop
