#pragma once

#include "keyboards/usb/hid_nodes.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace glimra::keyboards {

/// The folders in which the kernel shows HID devices, as temporary ones with files that say the same.
class HidTree {
public:
    HidTree() {
        std::filesystem::create_directories(folders().classes);
        std::filesystem::create_directory(folders().devices);
    }
    ~HidTree() { std::filesystem::remove_all(m_root); }
    HidTree(const HidTree&) = delete;
    HidTree& operator=(const HidTree&) = delete;

    HidFolders folders() const { return {m_root / "hidraw", m_root / "dev"}; }

    /// A device with a file that may be opened.
    void add(const std::string& name, const std::string& hidId) const {
        addWithoutFile(name, hidId);
        std::ofstream(folders().devices / name) << "";
    }
    void addWithoutFile(const std::string& name, const std::string& hidId) const {
        const std::filesystem::path device = folders().classes / name / "device";
        std::filesystem::create_directories(device);
        std::ofstream(device / "uevent") << "DRIVER=hid-generic\nHID_ID=" << hidId << "\nHID_NAME=keyboard\n";
    }
    void remove(const std::string& name) const {
        std::filesystem::remove(folders().devices / name);
        std::filesystem::remove_all(folders().classes / name);
    }

private:
    const std::filesystem::path m_root = std::filesystem::temp_directory_path() / "hid_tree";
};

} // namespace glimra::keyboards
