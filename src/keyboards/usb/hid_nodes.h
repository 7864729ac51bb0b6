#pragma once

#include "keyboards/usb/usb_models.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::keyboards {

/// The rule that gives the player at the machine the permission to open the keyboards.
inline constexpr std::string_view kUdevRuleFile = "70-glimra-keyboard.rules";

/// Where the kernel shows the machine's HID devices.
struct HidFolders {
    std::filesystem::path classes = "/sys/class/hidraw";
    std::filesystem::path devices = "/dev";
};

/// A device file of a keyboard of `kUsbModels`; a keyboard has several.
struct HidNode {
    const UsbModel* model = nullptr;
    std::filesystem::path file;
};

/// The keyboards that are plugged in, whether they may be opened or not; in the order of their file names.
std::vector<HidNode> findHidNodes(const HidFolders& folders);

/// "G810 (046d:c331)"
std::string describe(const UsbModel& model);

/// Why no keyboard can be lit, as a sentence for the log: there is none, or the permission is missing, with
/// what gives it. Empty when one is there and may be opened.
std::string whyNoUsbKeyboard(const HidFolders& folders);

/// Notices that a device file went away. One thread at a time.
class HidNodeWatch {
public:
    /// Watches the files of one model. Where the machine gives no watch, it never tells anything.
    HidNodeWatch(const HidFolders& folders, const UsbModel& model);
    ~HidNodeWatch();
    HidNodeWatch(const HidNodeWatch&) = delete;
    HidNodeWatch& operator=(const HidNodeWatch&) = delete;

    /// Can be read when there is something to ask `isGone` for; -1 when that never happens.
    int fd() const { return m_fd; }
    /// Whether one of the files went away since the last call, even if another has its name by now.
    bool isGone();

private:
    std::vector<HidNode> m_nodes;
    int m_fd;
};

} // namespace glimra::keyboards
