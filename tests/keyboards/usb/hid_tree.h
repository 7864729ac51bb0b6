#pragma once

#include "keyboards/usb/hid_nodes.h"
#include "support/folder.h"

namespace glimra::keyboards {

/// The folders in which the kernel shows HID devices, as temporary ones with files that say the same.
struct HidTree {
    HidFolders folders{tests::newFolder(), tests::newFolder()};

    /// A device, with a file that may be opened unless told otherwise.
    void add(const std::string& name, const std::string& hidId, bool hasFile = true,
             const std::string& interface = "01") const {
        const std::filesystem::path device = folders.classes / name / "device";
        std::filesystem::create_directories(device);
        std::ofstream(device / "uevent") << "DRIVER=hid-generic\nHID_ID=" << hidId << "\nHID_NAME=keyboard\n";
        std::ofstream(folders.classes / name / "bInterfaceNumber") << interface << "\n";
        if (hasFile)
            std::ofstream(folders.devices / name) << "";
    }
    void remove(const std::string& name) const {
        std::filesystem::remove(folders.devices / name);
        std::filesystem::remove_all(folders.classes / name);
    }
};

} // namespace glimra::keyboards
