// libg810-led opens a keyboard by the HID library's `hid_open`, which takes the first interface of a device:
// the one that types, which the udev rule leaves closed. The program's own function of that name, which the
// dynamic linker prefers, opens the interface with the lights.

#include "keyboards/usb/usb_models.h"

#include <hidapi/hidapi.h>

#include <cwchar>
#include <memory>

extern "C" hid_device* hid_open(unsigned short vendor, unsigned short product, const wchar_t* serial) {
    const std::unique_ptr<hid_device_info, decltype(&hid_free_enumeration)> all(
        hid_enumerate(vendor, product), &hid_free_enumeration);
    for (const hid_device_info* info = all.get(); info != nullptr; info = info->next) {
        const bool isMeant =
            serial == nullptr || *serial == L'\0' ||
            (info->serial_number != nullptr && std::wcscmp(serial, info->serial_number) == 0);
        if (isMeant && info->interface_number == static_cast<int>(glimra::keyboards::kLightsInterface))
            return hid_open_path(info->path);
    }
    return nullptr;
}
