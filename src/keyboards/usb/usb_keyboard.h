#pragma once

#include "keyboards/device/keyboard_device.h"
#include "keyboards/usb/hid_nodes.h"

#include <memory>

namespace glimra::keyboards {

/// A device that lights the first keyboard on USB that is in `kUsbModels`, through libg810-led. Null when the
/// program was built without that library. Main thread.
///
/// - Keys that the model lacks are left out; when no others changed, nothing is sent.
/// - Keys that only ISO and ABNT keyboards have show the colour of a key beside them.
/// - A model with a single light shows that of `kWholeBoard`.
/// - The keyboard cannot tell which lights it showed before, so it keeps the last frame when it is closed.
std::unique_ptr<KeyboardDevice> makeUsbKeyboard(const HidFolders& folders = {});

} // namespace glimra::keyboards
