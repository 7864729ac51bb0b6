#include "fake_hid.h"

#include <limits>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include <hidapi/hidapi.h>

struct hid_device_ {
    /// Which plugging-in it belongs to.
    int plugged;
};

namespace glimra::keyboards::fakeHid {

namespace {

constexpr unsigned short kVendor = 0x046D;
constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

struct Desk {
    std::mutex mutex;
    std::optional<std::uint16_t> product;
    Access access = Access::Permitted;
    int plugged = 0;
    std::size_t reportsUntilUnplugged = kNever;
    std::vector<std::string> reports;
};

Desk& desk() {
    static Desk theDesk;
    return theDesk;
}

std::string hexadecimal(const unsigned char* data, std::size_t size) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        text += kDigits[data[i] >> 4];
        text += kDigits[data[i] & 15];
    }
    return text;
}

bool isMeant(const Desk& there, unsigned short vendor, unsigned short product) {
    return there.product && (vendor == 0 || vendor == kVendor) && (product == 0 || product == *there.product);
}

} // namespace

void plug(std::uint16_t product, Access access) {
    const std::scoped_lock lock(desk().mutex);
    desk().product = product;
    desk().access = access;
    desk().reportsUntilUnplugged = kNever;
    ++desk().plugged;
}

void unplug() {
    const std::scoped_lock lock(desk().mutex);
    desk().product.reset();
}

void unplugAfter(std::size_t reports) {
    const std::scoped_lock lock(desk().mutex);
    desk().reportsUntilUnplugged = reports;
}

std::vector<std::string> takeReports() {
    const std::scoped_lock lock(desk().mutex);
    return std::exchange(desk().reports, {});
}

} // namespace glimra::keyboards::fakeHid

using glimra::keyboards::fakeHid::Access;
using glimra::keyboards::fakeHid::desk;
using glimra::keyboards::fakeHid::isMeant;
using glimra::keyboards::fakeHid::kNever;
using glimra::keyboards::fakeHid::kVendor;

extern "C" {

int hid_init() {
    return 0;
}

int hid_exit() {
    return 0;
}

hid_device_info* hid_enumerate(unsigned short vendor, unsigned short product) {
    const std::scoped_lock lock(desk().mutex);
    if (!isMeant(desk(), vendor, product))
        return nullptr;
    static wchar_t text[] = L"keyboard";
    static char path[] = "/dev/hidraw0";
    auto info = std::make_unique<hid_device_info>();
    info->path = path;
    info->vendor_id = kVendor;
    info->product_id = *desk().product;
    info->serial_number = text;
    info->manufacturer_string = text;
    info->product_string = text;
    info->interface_number = 1;
    return info.release();
}

void hid_free_enumeration(hid_device_info* info) {
    const std::unique_ptr<hid_device_info> owned(info);
}

hid_device* hid_open(unsigned short vendor, unsigned short product, const wchar_t*) {
    const std::scoped_lock lock(desk().mutex);
    if (!isMeant(desk(), vendor, product) || desk().access == Access::Denied)
        return nullptr;
    return std::make_unique<hid_device>(hid_device{desk().plugged}).release();
}

void hid_close(hid_device* device) {
    const std::unique_ptr<hid_device> owned(device);
}

int hid_write(hid_device* device, const unsigned char* data, std::size_t size) {
    const std::scoped_lock lock(desk().mutex);
    if (desk().reportsUntilUnplugged == 0)
        desk().product.reset();
    if (!desk().product || device->plugged != desk().plugged)
        return -1;
    if (desk().reportsUntilUnplugged != kNever)
        --desk().reportsUntilUnplugged;
    desk().reports.push_back(glimra::keyboards::fakeHid::hexadecimal(data, size));
    return static_cast<int>(size);
}

} // extern "C"
