#include "keyboards/usb/usb_keyboard.h"

#include "keyboards/usb/muted_output.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// The library itself was compiled with this definition, which adds members to its class. Without it here the
// object would be too small, and the library would write beyond its end. No other file may include the
// header.
#define hidapi
#include <g810-led/Keyboard.h>
#undef hidapi

namespace glimra::keyboards {

namespace {

using Key = LedKeyboard::Key;

struct LibraryKey {
    lighting::KeyCode code;
    Key key;
};

/// The last three keys are on ISO and ABNT keyboards only: the key beside Enter, which has the same scan code
/// as the backslash, and the keys beside the Shift keys, which have no code of their own and show the colour
/// of their Shift key.
constexpr std::array<LibraryKey, 118> kLibraryKeys{{
    {0x1, Key::esc},
    {0x3B, Key::f1},
    {0x3C, Key::f2},
    {0x3D, Key::f3},
    {0x3E, Key::f4},
    {0x3F, Key::f5},
    {0x40, Key::f6},
    {0x41, Key::f7},
    {0x42, Key::f8},
    {0x43, Key::f9},
    {0x44, Key::f10},
    {0x57, Key::f11},
    {0x58, Key::f12},
    {0x137, Key::print_screen},
    {0x46, Key::scroll_lock},
    {0x145, Key::pause_break},
    {0x29, Key::tilde},
    {0x2, Key::n1},
    {0x3, Key::n2},
    {0x4, Key::n3},
    {0x5, Key::n4},
    {0x6, Key::n5},
    {0x7, Key::n6},
    {0x8, Key::n7},
    {0x9, Key::n8},
    {0xA, Key::n9},
    {0xB, Key::n0},
    {0xC, Key::minus},
    {0xD, Key::equal},
    {0xE, Key::backspace},
    {0x152, Key::insert},
    {0x147, Key::home},
    {0x149, Key::page_up},
    {0x45, Key::num_lock},
    {0x135, Key::num_slash},
    {0x37, Key::num_asterisk},
    {0x4A, Key::num_minus},
    {0xF, Key::tab},
    {0x10, Key::q},
    {0x11, Key::w},
    {0x12, Key::e},
    {0x13, Key::r},
    {0x14, Key::t},
    {0x15, Key::y},
    {0x16, Key::u},
    {0x17, Key::i},
    {0x18, Key::o},
    {0x19, Key::p},
    {0x1A, Key::open_bracket},
    {0x1B, Key::close_bracket},
    {0x2B, Key::backslash},
    {0x153, Key::del},
    {0x14F, Key::end},
    {0x151, Key::page_down},
    {0x47, Key::num_7},
    {0x48, Key::num_8},
    {0x49, Key::num_9},
    {0x4E, Key::num_plus},
    {0x3A, Key::caps_lock},
    {0x1E, Key::a},
    {0x1F, Key::s},
    {0x20, Key::d},
    {0x21, Key::f},
    {0x22, Key::g},
    {0x23, Key::h},
    {0x24, Key::j},
    {0x25, Key::k},
    {0x26, Key::l},
    {0x27, Key::semicolon},
    {0x28, Key::quote},
    {0x1C, Key::enter},
    {0x4B, Key::num_4},
    {0x4C, Key::num_5},
    {0x4D, Key::num_6},
    {0x2A, Key::shift_left},
    {0x2C, Key::z},
    {0x2D, Key::x},
    {0x2E, Key::c},
    {0x2F, Key::v},
    {0x30, Key::b},
    {0x31, Key::n},
    {0x32, Key::m},
    {0x33, Key::comma},
    {0x34, Key::period},
    {0x35, Key::slash},
    {0x36, Key::shift_right},
    {0x148, Key::arrow_top},
    {0x4F, Key::num_1},
    {0x50, Key::num_2},
    {0x51, Key::num_3},
    {0x11C, Key::num_enter},
    {0x1D, Key::ctrl_left},
    {0x15B, Key::win_left},
    {0x38, Key::alt_left},
    {0x39, Key::space},
    {0x138, Key::alt_right},
    {0x15C, Key::win_right},
    {0x15D, Key::menu},
    {0x11D, Key::ctrl_right},
    {0x14B, Key::arrow_left},
    {0x150, Key::arrow_bottom},
    {0x14D, Key::arrow_right},
    {0x52, Key::num_0},
    {0x53, Key::num_dot},
    {0x200, Key::g1},
    {0x201, Key::g2},
    {0x202, Key::g3},
    {0x203, Key::g4},
    {0x204, Key::g5},
    {0x205, Key::g6},
    {0x206, Key::g7},
    {0x207, Key::g8},
    {0x208, Key::g9},
    {0x209, Key::logo},
    {0x20A, Key::logo2},
    {0x2B, Key::dollar},
    {0x2A, Key::intl_backslash},
    {0x36, Key::abnt_slash},
}};

bool isOnNumberPad(Key key) {
    return key >= Key::num_lock && key <= Key::num_dot;
}

bool hasKey(const UsbModel& model, Key key) {
    if (key == Key::logo)
        return model.logo;
    if (key == Key::logo2)
        return model.badge;
    if (key >= Key::g1 && key <= Key::g9)
        return static_cast<std::uint32_t>(key) - static_cast<std::uint32_t>(Key::g1) < model.macroKeys;
    return model.numberPad || !isOnNumberPad(key);
}

LedKeyboard::Color toLibraryColor(Rgb color) {
    return {color.red, color.green, color.blue};
}

class UsbKeyboard final : public KeyboardDevice {
public:
    explicit UsbKeyboard(HidFolders folders) : m_folders(std::move(folders)), m_watch(m_folders) {
        MutedOutput::prepare();
    }

    OpenResult look(const WakeEvent& stop) override;
    OpenResult open(const WakeEvent& stop) override;
    DeviceStatus write(std::span<const KeyColor> keys) override;
    void claim() override {}
    void close() override;
    DevicePace pace() const override { return {}; }
    int watchedFd() const override { return m_watch.fd(); }
    DeviceStatus serve() override;

private:
    bool send(std::span<const KeyColor> keys);
    DeviceStatus lost(const char* how) const;

    HidFolders m_folders;
    HidNodeWatch m_watch;
    /// The library opens the device for every report, and afterwards says that it is closed. Only what its
    /// functions return can be relied on.
    std::optional<LedKeyboard> m_library;
    const UsbModel* m_model = nullptr;
    /// The names of the model's device files when it was found.
    std::vector<std::string> m_files;
};

OpenResult UsbKeyboard::look(const WakeEvent&) {
    return lookForHidNode(m_folders);
}

OpenResult UsbKeyboard::open(const WakeEvent&) {
    // What changes after this is noticed by the next `serve`.
    m_watch.takeChanges();
    OpenResult result = lookForHidNode(m_folders);
    if (!result.found)
        return result;
    const MutedOutput muted;
    m_library.emplace();
    const bool opened = m_library->open();
    m_model = opened ? findUsbModel(m_library->getCurrentDevice().productID) : nullptr;
    if (m_model == nullptr) {
        m_library.reset();
        return {.text = "The keyboard on USB does not open."};
    }
    m_files.clear();
    for (const HidNode& node : findHidNodes(m_folders))
        if (node.model == m_model)
            m_files.push_back(node.file.filename());
    result.text = "The keyboard " + describe(*m_model) + " is lit over USB.";
    result.name = "keyboard " + std::string(m_model->name) + " on USB";
    return result;
}

DeviceStatus UsbKeyboard::write(std::span<const KeyColor> keys) {
    const MutedOutput muted;
    return send(keys) ? DeviceStatus{} : lost("does not answer any more");
}

bool UsbKeyboard::send(std::span<const KeyColor> keys) {
    LedKeyboard::KeyValueArray values;
    for (const KeyColor& changed : keys) {
        if (changed.key == kWholeBoard) {
            if (m_model->lights == Lights::Single)
                return m_library->setAllKeys(toLibraryColor(changed.color)) && m_library->commit();
            continue;
        }
        for (const LibraryKey& known : kLibraryKeys)
            if (known.code == lighting::kKeyboardLayout[changed.key].code && hasKey(*m_model, known.key))
                values.push_back({known.key, toLibraryColor(changed.color)});
    }
    return values.empty() || m_model->lights == Lights::Single ||
           (m_library->setKeys(std::move(values)) && m_library->commit());
}

DeviceStatus UsbKeyboard::serve() {
    const HidNodeWatch::Changes changes = m_watch.takeChanges();
    if (!m_library)
        return {changes.hasCome || changes.isIncomplete ? DeviceStatus::Kind::LookAgain
                                                        : DeviceStatus::Kind::Ok,
                {}};
    const bool isGone = std::ranges::any_of(
        changes.gone, [this](const std::string& name) { return std::ranges::count(m_files, name) > 0; });
    return isGone || changes.isIncomplete ? lost("was unplugged") : DeviceStatus{};
}

void UsbKeyboard::close() {
    const MutedOutput muted;
    m_library.reset();
}

DeviceStatus UsbKeyboard::lost(const char* how) const {
    return {DeviceStatus::Kind::Lost, "The keyboard " + describe(*m_model) + " " + how + "."};
}

} // namespace

std::unique_ptr<KeyboardDevice> makeUsbKeyboard(const HidFolders& folders) {
    return std::make_unique<UsbKeyboard>(folders);
}

} // namespace glimra::keyboards
