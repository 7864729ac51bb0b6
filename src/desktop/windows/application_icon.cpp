#include "desktop/windows/application_icon.h"

#include <QString>

// The linker leaves a library's resources out unless somebody asks for them, which only works outside
// namespaces.
static void keepIcons() {
    Q_INIT_RESOURCE(icons);
}

namespace glimra::desktop {

QIcon applicationIcon() {
    keepIcons();
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128})
        icon.addFile(QString(":/icons/glimra-%1.png").arg(size));
    return icon;
}

} // namespace glimra::desktop
