#include "app/outlets.h"

#include <algorithm>

namespace glimra::app {

namespace {

// The outlet's name is written once, in its declaration, and once here.
#define GLIMRA_OUTLET(outlet)                                                                                \
    NamedOutlet {                                                                                            \
#outlet, &Outlets::outlet                                                                            \
    }
constexpr std::array kSingleOutlets{
    GLIMRA_OUTLET(mainWindow),
    GLIMRA_OUTLET(myTextScroll),
    GLIMRA_OUTLET(imageView),
    GLIMRA_OUTLET(colorProgrammerWindow),
    GLIMRA_OUTLET(keyboardCanvas),
    GLIMRA_OUTLET(colorButtonGroup),
    GLIMRA_OUTLET(keyCoolColor),
    GLIMRA_OUTLET(colorA),
    GLIMRA_OUTLET(colorB),
    GLIMRA_OUTLET(colorC),
    GLIMRA_OUTLET(colorD),
    GLIMRA_OUTLET(colorE),
    GLIMRA_OUTLET(colorF),
    GLIMRA_OUTLET(colorG),
    GLIMRA_OUTLET(colorH),
    GLIMRA_OUTLET(colorI),
    GLIMRA_OUTLET(colorJ),
    GLIMRA_OUTLET(colorK),
    GLIMRA_OUTLET(colorL),
    GLIMRA_OUTLET(currentProfilePopup),
    GLIMRA_OUTLET(profileChangeAlert),
    GLIMRA_OUTLET(blinkTimeTextbox),
    GLIMRA_OUTLET(actionBarEffectCheckbox),
    GLIMRA_OUTLET(cooldownPreviewBtn),
    GLIMRA_OUTLET(controlAllLightsCheckbox),
    GLIMRA_OUTLET(combatChatAlertCheckbox),
    GLIMRA_OUTLET(autoChatProfileCheckbox),
    GLIMRA_OUTLET(singleColorModeBtn),
    GLIMRA_OUTLET(copyProfileDialog),
    GLIMRA_OUTLET(fromProfileMenu),
    GLIMRA_OUTLET(toProfileMenu),
    GLIMRA_OUTLET(copyProfileCopyBtn),
    GLIMRA_OUTLET(launchOptionWindow),
    GLIMRA_OUTLET(WoWAppNameField),
    GLIMRA_OUTLET(WoWClassicAppNameField),
    GLIMRA_OUTLET(BNAppNameField),
    GLIMRA_OUTLET(autorunNoneMI),
    GLIMRA_OUTLET(autorunBNetMI),
    GLIMRA_OUTLET(autorunWowMI),
    GLIMRA_OUTLET(autorunClassicMI),
    GLIMRA_OUTLET(aboutWindow),
    GLIMRA_OUTLET(aboutVersionLabel),
    GLIMRA_OUTLET(aboutCopyLabel),
    GLIMRA_OUTLET(aboutLinkLabel),
    GLIMRA_OUTLET(helpWindow),
    GLIMRA_OUTLET(helpTextView),
    GLIMRA_OUTLET(actionKeySetterWindow),
};
#undef GLIMRA_OUTLET

struct Bar {
    char digit;
    KeyMenus Outlets::*menus;
};
constexpr std::array kBars{Bar{'1', &Outlets::menu1}, Bar{'5', &Outlets::menu5}, Bar{'6', &Outlets::menu6}};
constexpr std::size_t kSlots = std::tuple_size_v<KeyMenus>;
constexpr std::size_t kMenus = kBars.size() * kSlots;

/// "menu101" to "menu612".
constexpr auto kMenuNames = [] {
    std::array<std::array<char, 7>, kMenus> names{};
    for (std::size_t i = 0; i < kMenus; ++i) {
        const std::size_t slot = i % kSlots + 1;
        auto end = std::ranges::copy(std::string_view("menu"), names[i].begin()).out;
        *end++ = kBars[i / kSlots].digit;
        *end++ = static_cast<char>('0' + slot / 10);
        *end++ = static_cast<char>('0' + slot % 10);
    }
    return names;
}();

constexpr auto kOutlets = [] {
    std::array<NamedOutlet, kSingleOutlets.size() + kMenus> all{};
    auto next = std::ranges::copy(kSingleOutlets, all.begin()).out;
    for (std::size_t i = 0; i < kMenus; ++i)
        *next++ = {{kMenuNames[i].data(), kMenuNames[i].size()},
                   KeyMenu{kBars[i / kSlots].menus, i % kSlots}};
    return all;
}();

} // namespace

ControlPointer NamedOutlet::in(Outlets& outlets) const {
    return std::visit(
        [&outlets](const auto& where) -> ControlPointer {
            if constexpr (std::is_same_v<std::decay_t<decltype(where)>, KeyMenu>)
                return &(outlets.*where.bar)[where.index];
            else
                return &(outlets.*where);
        },
        member);
}

platform::Window* NamedOutlet::windowIn(Outlets& outlets) const {
    const auto* const window = std::get_if<platform::Window Outlets::*>(&member);
    return window == nullptr ? nullptr : &(outlets.**window);
}

std::span<const NamedOutlet> namedOutlets() {
    return kOutlets;
}

const NamedOutlet* findOutlet(std::string_view name) {
    const auto* const found = std::ranges::find(kOutlets, name, &NamedOutlet::name);
    return found == kOutlets.end() ? nullptr : found;
}

} // namespace glimra::app
