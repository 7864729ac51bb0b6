#include "keyboards/usb/hid_nodes.h"

#include "platform/hexadecimal.h"

#include <charconv>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>

#include <sys/inotify.h>
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

const UsbModel* modelOfNode(const std::filesystem::path& node) {
    constexpr std::string_view kHidId = "HID_ID=";
    std::ifstream properties(node / "device/uevent");
    for (std::string line; std::getline(properties, line);)
        if (line.starts_with(kHidId))
            return modelOfHidId(std::string_view(line).substr(kHidId.size()));
    return nullptr;
}

bool mayBeOpened(const HidNode& node) {
    return access(node.file.c_str(), R_OK | W_OK) == 0;
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

std::string whyNoUsbKeyboard(const HidFolders& folders) {
    const std::vector<HidNode> nodes = findHidNodes(folders);
    if (nodes.empty())
        return "There is no keyboard that the USB driver knows.";
    const auto denied = std::ranges::find_if_not(nodes, mayBeOpened);
    if (denied == nodes.end())
        return {};
    return "There is a keyboard " + describe(*denied->model) + ", but no permission to open " +
           denied->file.string() + ": install the udev rule " + std::string(kUdevRuleFile) +
           " and plug the keyboard in again.";
}

HidNodeWatch::HidNodeWatch(const HidFolders& folders, const UsbModel& model)
    : m_nodes(findHidNodes(folders)),
      m_fd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    std::erase_if(m_nodes, [&](const HidNode& node) { return node.model != &model; });
    if (m_fd >= 0)
        inotify_add_watch(m_fd, folders.devices.c_str(), IN_DELETE | IN_MOVED_FROM | IN_ONLYDIR);
}

HidNodeWatch::~HidNodeWatch() {
    if (m_fd >= 0)
        close(m_fd);
}

bool HidNodeWatch::isGone() {
    alignas(inotify_event) std::array<char, 4096> buffer;
    bool gone = false;
    for (ssize_t size = 0; (size = read(m_fd, buffer.data(), buffer.size())) > 0;) {
        for (std::size_t offset = 0; offset < static_cast<std::size_t>(size);) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + offset);
            const std::string_view name = event->len > 0 ? event->name : "";
            gone |= (event->mask & IN_Q_OVERFLOW) != 0 ||
                    std::ranges::any_of(m_nodes, [name](const HidNode& node) {
                        return node.file.filename().native() == name;
                    });
            offset += sizeof(inotify_event) + event->len;
        }
    }
    return gone;
}

} // namespace glimra::keyboards
