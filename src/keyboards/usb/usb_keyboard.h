#pragma once

#include "keyboards/device/keyboard_device.h"
#include "keyboards/usb/hid_nodes.h"

#include <memory>

namespace glimra::keyboards {

/// The first keyboard of `kUsbModels` on USB, through libg810-led. Null when the program was built without
/// that library. Main thread.
///
/// Keys that a model does not have are left out, and a frame of nothing else sends nothing. The keys that
/// only ISO and ABNT keyboards have show their neighbours' colours. A model with a single light shows the
/// colour that most keys have, of several such the one that comes first on the keyboard. The keyboard cannot
/// tell what it showed before, so it keeps the last frame when it is closed.
std::unique_ptr<KeyboardDevice> makeUsbKeyboard(const HidFolders& folders = {});

} // namespace glimra::keyboards
