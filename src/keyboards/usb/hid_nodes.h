#pragma once

#include "keyboards/usb/usb_models.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::keyboards {

/// The udev rule that lets the player who sits at the computer open the keyboards.
inline constexpr std::string_view kUdevRuleFile = "70-glimra-keyboard.rules";

/// The folders in which the kernel shows the computer's HID devices.
struct HidFolders {
    std::filesystem::path classes = "/sys/class/hidraw";
    std::filesystem::path devices = "/dev";
};

/// A device file of a keyboard that is in `kUsbModels`. A keyboard has several such files.
struct HidNode {
    const UsbModel* model = nullptr;
    std::filesystem::path file;
};

/// The device files of all keyboards that are plugged in, whether they may be opened or not, sorted by name.
std::vector<HidNode> findHidNodes(const HidFolders& folders);

/// "G810 (046d:c331)"
std::string describe(const UsbModel& model);

/// Why no keyboard can be lit, as a sentence for the log: because there is none, or because the permission to
/// open it is missing, and then how to get it. Empty when a keyboard is there and may be opened.
std::string whyNoUsbKeyboard(const HidFolders& folders);

/// Notices when a keyboard is unplugged, by its device files. One thread at a time.
class HidNodeWatch {
public:
    /// Watches the device files of one model. When the system cannot watch them, nothing is ever noticed.
    HidNodeWatch(const HidFolders& folders, const UsbModel& model);
    ~HidNodeWatch();
    HidNodeWatch(const HidNodeWatch&) = delete;
    HidNodeWatch& operator=(const HidNodeWatch&) = delete;

    /// Can be read when it is worth asking `isGone`; -1 when the system cannot watch files.
    int fd() const { return m_fd; }
    /// Whether one of the files was removed since the last call, even if a new file has its name by now.
    bool isGone();

private:
    std::vector<HidNode> m_nodes;
    int m_fd;
};

} // namespace glimra::keyboards
