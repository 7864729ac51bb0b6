#include "keyboards/usb/hid_nodes.h"

#include "platform/hexadecimal.h"

#include <charconv>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>

#include <grp.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace glimra::keyboards {

namespace {

constexpr std::string_view kUsbBus = "0003";

std::optional<unsigned> hexadecimal(std::string_view text) {
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

/// Reads what the kernel writes as bus:vendor:product, such as "0003:0000046D:0000C331". Null when that is no
/// keyboard of the table.
const UsbModel* modelOfHidId(std::string_view id) {
    const std::size_t first = id.find(':');
    const std::size_t second = id.find(':', first + 1);
    if (first == std::string_view::npos || second == std::string_view::npos || id.substr(0, first) != kUsbBus)
        return nullptr;
    const std::optional<unsigned> vendor = hexadecimal(id.substr(first + 1, second - first - 1));
    const std::optional<unsigned> product = hexadecimal(id.substr(second + 1));
    if (vendor != kUsbVendor || !product || *product > 0xFFFF)
        return nullptr;
    return findUsbModel(static_cast<std::uint16_t>(*product));
}

/// All models take their colours by their second interface; by the first they type.
bool carriesTheLights(const std::filesystem::path& node) {
    std::string number;
    std::ifstream(node / "device/../bInterfaceNumber") >> number;
    return hexadecimal(number) == kLightsInterface;
}

const UsbModel* modelOfNode(const std::filesystem::path& node) {
    constexpr std::string_view kHidId = "HID_ID=";
    if (!carriesTheLights(node))
        return nullptr;
    std::ifstream properties(node / "device/uevent");
    for (std::string line; std::getline(properties, line);)
        if (line.starts_with(kHidId))
            return modelOfHidId(std::string_view(line).substr(kHidId.size()));
    return nullptr;
}

bool mayBeOpened(const HidNode& node) {
    return access(node.file.c_str(), R_OK | W_OK) == 0;
}

/// The group whose members may read and write the file; empty when there is none.
std::string groupOf(const std::filesystem::path& file) {
    constexpr mode_t kNeeded = S_IRGRP | S_IWGRP;
    struct stat status {};
    if (stat(file.c_str(), &status) != 0 || (status.st_mode & kNeeded) != kNeeded || status.st_gid == 0)
        return {};
    std::array<char, 1024> texts{};
    group entry{};
    group* found = nullptr;
    getgrgid_r(status.st_gid, &entry, texts.data(), texts.size(), &found);
    return found != nullptr ? found->gr_name : "";
}

std::string remedyForDenied(const std::filesystem::path& file) {
    const std::string group = groupOf(file);
    if (!group.empty())
        return "Join the group " + group + ", then log in again: sudo usermod -aG " + group + " \"$USER\"";
    return "See that the rule " + std::string(kUdevRuleFile) +
           " is installed, then: sudo udevadm control --reload && sudo udevadm trigger --action=change "
           "--subsystem-match=hidraw";
}

} // namespace

std::vector<HidNode> findHidNodes(const HidFolders& folders) {
    std::vector<HidNode> nodes;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folders.classes, error), end; !error && entry != end;
         entry.increment(error))
        if (const UsbModel* model = modelOfNode(entry->path()))
            nodes.push_back({model, folders.devices / entry->path().filename()});
    std::ranges::sort(nodes, {}, &HidNode::file);
    return nodes;
}

std::string describe(const UsbModel& model) {
    std::string text(model.name);
    text += " (046d:";
    for (const int shift : {12, 8, 4, 0})
        text += platform::kHexDigits[(model.product >> shift) & 0xF];
    return text + ")";
}

OpenResult lookForHidNode(const HidFolders& folders) {
    const std::vector<HidNode> nodes = findHidNodes(folders);
    if (nodes.empty())
        return {.text = "There is no keyboard that the USB driver knows.",
                .remedy = "Nothing to do, unless you have one of the models in the guide: then plug it in."};
    const auto open = std::ranges::find_if(nodes, mayBeOpened);
    if (open == nodes.end())
        return {.text = "There is a keyboard " + describe(*nodes.front().model) +
                        ", but no permission to open " + nodes.front().file.string() + ".",
                .remedy = remedyForDenied(nodes.front().file)};
    return {.found = true,
            .text = "The keyboard " + describe(*open->model) + " is there and may be opened.",
            .name = "keyboard " + std::string(open->model->name) + " on USB"};
}

HidNodeWatch::HidNodeWatch(const HidFolders& folders) : m_fd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    // The permission comes some time after the file, as a change of its attributes.
    if (m_fd >= 0)
        inotify_add_watch(m_fd, folders.devices.c_str(),
                          IN_CREATE | IN_MOVED_TO | IN_ATTRIB | IN_DELETE | IN_MOVED_FROM | IN_ONLYDIR);
}

HidNodeWatch::~HidNodeWatch() {
    if (m_fd >= 0)
        close(m_fd);
}

HidNodeWatch::Changes HidNodeWatch::takeChanges() {
    alignas(inotify_event) std::array<char, 4096> buffer;
    Changes changes;
    for (ssize_t size = 0; (size = read(m_fd, buffer.data(), buffer.size())) > 0;)
        for (std::size_t offset = 0; offset < static_cast<std::size_t>(size);) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + offset);
            const std::string_view name = event->len > 0 ? event->name : "";
            changes.isIncomplete |= (event->mask & IN_Q_OVERFLOW) != 0;
            if (name.starts_with("hidraw") && (event->mask & (IN_DELETE | IN_MOVED_FROM)) != 0)
                changes.gone.emplace_back(name);
            else if (name.starts_with("hidraw"))
                changes.hasCome = true;
            offset += sizeof(inotify_event) + event->len;
        }
    return changes;
}

} // namespace glimra::keyboards
