#include "fake_hid.h"

#include "platform/hexadecimal.h"

#include <hidapi/hidapi.h>

struct hid_device_ {
    /// Which plugging-in it belongs to.
    int plugged;
};

namespace {

using glimra::tests::fakeHid;

constexpr unsigned short kVendor = 0x046D;

bool isMeant(unsigned short vendor, unsigned short product) {
    return fakeHid.product != 0 && (vendor == 0 || vendor == kVendor) &&
           (product == 0 || product == fakeHid.product);
}

} // namespace

extern "C" {

int hid_init() {
    return 0;
}

int hid_exit() {
    return 0;
}

hid_device_info* hid_enumerate(unsigned short vendor, unsigned short product) {
    static wchar_t text[] = L"keyboard";
    static char path[] = "/dev/hidraw0";
    static char typingPath[] = "/dev/typing";
    // The interface that types comes first.
    static hid_device_info infos[2];
    for (int number : {1, 0}) {
        infos[number] = {};
        infos[number].path = number == 0 ? typingPath : path;
        infos[number].vendor_id = kVendor;
        infos[number].product_id = fakeHid.product;
        infos[number].serial_number = infos[number].manufacturer_string = infos[number].product_string = text;
        infos[number].interface_number = number;
    }
    infos[0].next = &infos[1];
    return isMeant(vendor, product) ? infos : nullptr;
}

void hid_free_enumeration(hid_device_info*) {
}

hid_device* hid_open_path(const char* path) {
    const bool isThere = fakeHid.product != 0 && path == std::string_view("/dev/hidraw0");
    return isThere ? new hid_device{fakeHid.timesPlugged} : nullptr;
}

void hid_close(hid_device* device) {
    delete device;
}

int hid_write(hid_device* device, const unsigned char* data, std::size_t size) {
    if (fakeHid.product == 0 || device->plugged != fakeHid.timesPlugged || fakeHid.reportsLeft-- == 0) {
        fakeHid.product = 0;
        return -1;
    }
    fakeHid.reports.push_back(glimra::platform::hexadecimal({data, size}));
    return static_cast<int>(size);
}

} // extern "C"
