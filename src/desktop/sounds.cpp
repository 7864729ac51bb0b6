#include "desktop/sounds.h"

#include <QApplication>

namespace glimra::desktop {

void Sounds::play(std::string_view) {
    QApplication::beep();
}

} // namespace glimra::desktop
