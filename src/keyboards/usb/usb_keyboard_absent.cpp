#include "keyboards/usb/usb_keyboard.h"

namespace glimra::keyboards {

std::unique_ptr<KeyboardDevice> makeUsbKeyboard(const HidFolders&) {
    return nullptr;
}

} // namespace glimra::keyboards
