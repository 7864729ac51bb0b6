#include "app/color_programmer.h"

#include "app/color_wells.h"
#include "platform/stored_values.h"

#include <utility>

namespace glimra::app {

namespace {

constexpr std::string_view kSingleColorKey = "singleColorMode";
constexpr std::string_view kAutoToggleKey = "autoToggleProfile";
constexpr std::string_view kChatWarningKey = "combatChatWarning";

/// The pop-up's last item; the nine profiles come first, then a separator.
constexpr int kCopyItem = 10;
/// Tag of the copy dialog's Copy button.
constexpr int kCopy = 1;

bool isProfile(int number) {
    return number >= 1 && number <= static_cast<int>(lighting::kProfileCount);
}

void loadOption(const platform::SettingsReader& settings, std::string_view key, bool& option,
                platform::CheckBox& checkBox) {
    option = settings
                 .checked(platform::storedBool(settings.defaults, key), key,
                          "is neither yes nor no; no stands in for it.")
                 .value_or(false);
    checkBox.on.set(option);
}

void takeOption(platform::UserDefaults& defaults, std::string_view key, bool& option,
                const platform::CheckBox& checkBox) {
    option = checkBox.on.get();
    defaults.set(key, option);
}

} // namespace

ColorProgrammer::ColorProgrammer(const Parts& parts) : m(parts) {
    m.outlets.currentProfilePopup.separator = kCopyItem - 1;
}

void ColorProgrammer::loadSingleColorMode() {
    loadOption({m.defaults, m.systemLog}, kSingleColorKey, m.options.useSingleColorMode,
               m.outlets.singleColorModeBtn);
}

void ColorProgrammer::loadAutoToggleProfile() {
    loadOption({m.defaults, m.systemLog}, kAutoToggleKey, m.options.autoToggleProfile2,
               m.outlets.autoChatProfileCheckbox);
}

void ColorProgrammer::loadCombatChatWarning() {
    loadOption({m.defaults, m.systemLog}, kChatWarningKey, m.options.combatChatWarning,
               m.outlets.combatChatAlertCheckbox);
}

void ColorProgrammer::openColorProgrammer() {
    m.store.loadProfile(m.profile.activeColorProfile);
    m.canvas.fillFrom(m.lightingState);
    applyColorSetToWells(m.outlets, m.lightingState.keyboardColorSet, m.canvas);
    m.outlets.actionBarEffectCheckbox.on.set(m.lightingState.useSpellCooldowns[0]);
    applyCanvasColors();
    showSelectedProfile();
    if (m.options.useSingleColorMode)
        singleColorModeCheck();
    m.runLoop.post([this] {
        m.outlets.colorProgrammerWindow.bringToFront();
        m.outlets.keyboardCanvas.displayNeeded.emit();
    });
    m.messages.confirmCalibrate = true;
}

void ColorProgrammer::applyCanvasColors() {
    m.canvas.fillIfEmpty(m.lightingState);
    m.lightingState.keyboardColorBitmap.at(static_cast<std::size_t>(m.profile.activeColorProfile)) =
        lighting::buildColorBitmap(m.canvas.keyColorSet, m.canvas.keysToColors);
    if (!m.options.useSingleColorMode)
        m.lighting.showProfileLighting(m.profile.activeColorProfile);
    m.outlets.autoChatProfileCheckbox.enabled.set(true);
    m.outlets.singleColorModeBtn.enabled.set(true);
    m.defaults.set(kAutoToggleKey, m.options.autoToggleProfile2);
    m.defaults.set(kSingleColorKey, m.options.useSingleColorMode);
}

void ColorProgrammer::singleColorModeCheck() {
    const bool on = m.outlets.singleColorModeBtn.on.get();
    m.options.useSingleColorMode = on;
    m.lightingState.singleColorFlag = on;
    if (on)
        m.outlets.actionBarEffectCheckbox.on.set(false);
    m.outlets.actionBarEffectCheckbox.enabled.set(!on);
    m.outlets.cooldownPreviewBtn.enabled.set(!on);
    if (on)
        m.cooldowns.showCooldowns(false);
    applyCanvasColors();
    m.outlets.keyboardCanvas.displayNeeded.emit();
    m.defaults.set(kSingleColorKey, m.options.useSingleColorMode);
}

void ColorProgrammer::autoToggleProfileClicked() {
    takeOption(m.defaults, kAutoToggleKey, m.options.autoToggleProfile2, m.outlets.autoChatProfileCheckbox);
}

void ColorProgrammer::combatChatWarningClicked() {
    takeOption(m.defaults, kChatWarningKey, m.options.combatChatWarning, m.outlets.combatChatAlertCheckbox);
}

void ColorProgrammer::paintingColorPicker() {
    choosePaintColor(m.outlets, m.canvas);
}

void ColorProgrammer::colorWellDropped(const WellColor& dropped) {
    const platform::ColorWell& well = wellOfTag(m.outlets, dropped.tag);
    const int slot = slotOfWell(well);
    m.edits.perform(slot, [&] {
        m.canvas.fillIfEmpty(m.lightingState);
        m.canvas.keyColorSet.at(static_cast<std::size_t>(slot)) = well.color.get();
        m.outlets.keyboardCanvas.displayNeeded.emit();
        m.profile.profileTouched = true;
    });
}

void ColorProgrammer::colorWellRestored(const WellColor& restored) {
    colorWellDropped(restored);
    m.edits.settleTouched();
}

void ColorProgrammer::colorOK() {
    m.store.saveProfile(m.profile.activeColorProfile);
    closeWindow();
    m.cooldowns.blinkTimeChanged();
}

void ColorProgrammer::colorCancel() {
    m.store.loadProfile(m.profile.activeColorProfile);
    m.lighting.showProfileLighting(m.profile.activeColorProfile);
    if (m.options.useSingleColorMode)
        setAllToColorA();
    closeWindow();
}

void ColorProgrammer::profileSelectPopup() {
    const int chosen = m.outlets.currentProfilePopup.selected.get() + 1;
    if (chosen == m.profile.activeColorProfile)
        return;
    if (!m.unsavedEdits.settle()) {
        showSelectedProfile();
        return;
    }
    std::optional<EditState> overwritten;
    if (chosen == kCopyItem + 1) {
        overwritten = copyProfile();
        showSelectedProfile();
        if (!overwritten)
            return;
    } else if (isProfile(chosen)) {
        m.store.loadProfile(chosen);
        m.profile.activeColorProfile = chosen;
    } else {
        showSelectedProfile();
        return;
    }
    showLoadedProfile();
    if (overwritten)
        m.edits.replaced(std::move(*overwritten));
}

std::optional<EditState> ColorProgrammer::copyProfile() {
    m.outlets.fromProfileMenu.selected.set(m.profile.activeColorProfile - 1);
    m.outlets.toProfileMenu.selected.set(m.profile.activeColorProfile %
                                         static_cast<int>(lighting::kProfileCount));
    copyProfileSameSame();
    const int answer = m.windows.runModal(m.outlets.copyProfileDialog);
    m.outlets.copyProfileDialog.visible.set(false);
    const int from = m.outlets.fromProfileMenu.selected.get() + 1;
    const int to = m.outlets.toProfileMenu.selected.get() + 1;
    if (answer != kCopy || !isProfile(from) || !isProfile(to))
        return std::nullopt;
    EditState overwritten = m.edits.stored(to);
    m.store.loadProfile(from);
    m.canvas.fillFrom(m.lightingState);
    m.outlets.actionBarEffectCheckbox.on.set(m.lightingState.useSpellCooldowns[0]);
    m.profile.activeColorProfile = to;
    m.store.saveProfile(to);
    m.store.loadProfile(to);
    return overwritten;
}

void ColorProgrammer::copyProfileSameSame() {
    m.outlets.copyProfileCopyBtn.enabled.set(m.outlets.fromProfileMenu.selected.get() !=
                                             m.outlets.toProfileMenu.selected.get());
}

void ColorProgrammer::showProfile(const ButtonTag& button) {
    if (!isProfile(button.tag))
        return;
    m.dispatcher.switchToProfile(button.tag);
    // Loading gives the canvas the flag of what it loads.
    m.canvas.usingActionbarCooldowns = canvasShowsCooldowns();
}

bool ColorProgrammer::canvasShowsCooldowns() const {
    return m.lightingState.useSpellCooldowns.at(static_cast<std::size_t>(m.canvas.profile));
}

void ColorProgrammer::showLoadedProfile() {
    applyColorSetToWells(m.outlets, m.lightingState.keyboardColorSet, m.canvas);
    m.canvas.fillFrom(m.lightingState);
    m.outlets.actionBarEffectCheckbox.on.set(m.lightingState.useSpellCooldowns[0]);
    if (m.options.useSingleColorMode)
        setAllToColorA();
    m.outlets.keyboardCanvas.displayNeeded.emit();
    m.profile.profileTouched = false;
}

void ColorProgrammer::showSelectedProfile() {
    m.outlets.currentProfilePopup.selected.set(m.profile.activeColorProfile - 1);
}

void ColorProgrammer::setAllToColorA() {
    m.lighting.setAllKeysColor(m.lightingState.keyboardColorSet[lighting::kColorASlot]);
}

void ColorProgrammer::closeWindow() {
    m.windows.hideColorPanel();
    m.outlets.colorProgrammerWindow.visible.set(false);
    m.profile.profileTouched = false;
}

} // namespace glimra::app
