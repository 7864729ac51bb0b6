#pragma once

#include "keyboards/device/keyboard_device.h"
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

/// The device file by which a keyboard that is in `kUsbModels` is lit. What is typed comes by another one,
/// which nobody needs to open.
struct HidNode {
    const UsbModel* model = nullptr;
    std::filesystem::path file;
};

/// The device files of all keyboards that are plugged in, whether they may be opened or not, sorted by name.
std::vector<HidNode> findHidNodes(const HidFolders& folders);

/// "G810 (046d:c331)"
std::string describe(const UsbModel& model);

/// Which keyboard can be lit. None is found when there is none, or when the permission to open it is missing.
OpenResult lookForHidNode(const HidFolders& folders);

/// Notices when a keyboard is unplugged or plugged in, by its device files. One thread at a time.
class HidNodeWatch {
public:
    struct Changes {
        /// Names of files that were removed, even if new files have their names by now.
        std::vector<std::string> gone;
        /// A file has come, or may be opened by others than before.
        bool hasCome = false;
        /// Some changes were missed.
        bool isIncomplete = false;
    };

    /// When the system cannot watch the folder, nothing is ever noticed.
    explicit HidNodeWatch(const HidFolders& folders);
    ~HidNodeWatch();
    HidNodeWatch(const HidNodeWatch&) = delete;
    HidNodeWatch& operator=(const HidNodeWatch&) = delete;

    /// Can be read when there are changes; -1 when the system cannot watch files.
    int fd() const { return m_fd; }
    /// What has changed since the last call; does not wait.
    Changes takeChanges();

private:
    int m_fd;
};

} // namespace glimra::keyboards
