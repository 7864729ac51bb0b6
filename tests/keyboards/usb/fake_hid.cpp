#include "fake_hid.h"

#include <limits>
#include <memory>
#include <utility>

#include <hidapi/hidapi.h>

struct hid_device_ {
    /// Which plugging-in it belongs to.
    int plugged;
};

namespace {

constexpr unsigned short kVendor = 0x046D;
/// 0 for none.
unsigned short thereIs = 0;
int timesPlugged = 0;
std::size_t reportsLeft = 0;
std::vector<std::string> written;

bool isMeant(unsigned short vendor, unsigned short product) {
    return thereIs != 0 && (vendor == 0 || vendor == kVendor) && (product == 0 || product == thereIs);
}

} // namespace

namespace glimra::tests::fakeHid {

void plug(std::uint16_t product) {
    thereIs = product;
    reportsLeft = std::numeric_limits<std::size_t>::max();
    ++timesPlugged;
}

void unplug() {
    thereIs = 0;
}

void unplugAfter(std::size_t reports) {
    reportsLeft = reports;
}

std::vector<std::string> takeReports() {
    return std::exchange(written, {});
}

} // namespace glimra::tests::fakeHid

extern "C" {

int hid_init() {
    return 0;
}

int hid_exit() {
    return 0;
}

hid_device_info* hid_enumerate(unsigned short vendor, unsigned short product) {
    if (!isMeant(vendor, product))
        return nullptr;
    static wchar_t text[] = L"keyboard";
    static char path[] = "/dev/hidraw0";
    auto info = std::make_unique<hid_device_info>();
    info->path = path;
    info->vendor_id = kVendor;
    info->product_id = thereIs;
    info->serial_number = info->manufacturer_string = info->product_string = text;
    info->interface_number = 1;
    return info.release();
}

void hid_free_enumeration(hid_device_info* info) {
    const std::unique_ptr<hid_device_info> owned(info);
}

hid_device* hid_open(unsigned short vendor, unsigned short product, const wchar_t*) {
    return isMeant(vendor, product) ? std::make_unique<hid_device>(hid_device{timesPlugged}).release()
                                    : nullptr;
}

void hid_close(hid_device* device) {
    const std::unique_ptr<hid_device> owned(device);
}

int hid_write(hid_device* device, const unsigned char* data, std::size_t size) {
    if (thereIs == 0 || device->plugged != timesPlugged || reportsLeft-- == 0) {
        thereIs = 0;
        return -1;
    }
    std::string& report = written.emplace_back();
    for (std::size_t i = 0; i < size; ++i) {
        constexpr char kDigits[] = "0123456789abcdef";
        report += {kDigits[data[i] >> 4], kDigits[data[i] & 15]};
    }
    return static_cast<int>(size);
}

} // extern "C"
