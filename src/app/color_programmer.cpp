#include "app/color_programmer.h"

#include "app/color_wells.h"
#include "platform/stored_values.h"

#include <utility>

namespace glimra::app {

namespace {

namespace settings = platform::settings;

/// The pop-up's last item; the nine profiles come first, then a separator.
constexpr int kCopyItem = 10;
/// Tag of the copy dialog's Copy button.
constexpr int kCopy = 1;

bool isProfile(int number) {
    return number >= 1 && number <= static_cast<int>(lighting::kProfileCount);
}

using Option = platform::Setting<bool>;

void loadOption(const platform::SettingsReader& settings, const Option& setting, bool& option,
                platform::CheckBox& checkBox) {
    option = settings.value(setting);
    checkBox.on.set(option);
}

void takeOption(platform::UserDefaults& defaults, const Option& setting, bool& option,
                const platform::CheckBox& checkBox) {
    option = checkBox.on.get();
    defaults.set(setting.key, option);
}

} // namespace

ColorProgrammer::ColorProgrammer(const Parts& parts) : m_parts(parts) {
    m_parts.outlets.currentProfilePopup.separator = kCopyItem - 1;
}

void ColorProgrammer::loadSingleColorMode() {
    loadOption({m_parts.defaults, m_parts.systemLog}, settings::kSingleColorMode,
               m_parts.options.useSingleColorMode, m_parts.outlets.singleColorModeBtn);
}

void ColorProgrammer::loadAutoToggleProfile() {
    loadOption({m_parts.defaults, m_parts.systemLog}, settings::kAutoToggleProfile,
               m_parts.options.autoToggleProfile2, m_parts.outlets.autoChatProfileCheckbox);
}

void ColorProgrammer::loadCombatChatWarning() {
    loadOption({m_parts.defaults, m_parts.systemLog}, settings::kCombatChatWarning,
               m_parts.options.combatChatWarning, m_parts.outlets.combatChatAlertCheckbox);
}

void ColorProgrammer::openColorProgrammer() {
    m_parts.store.loadProfile(m_parts.profile.activeColorProfile);
    m_parts.canvas.fillFrom(m_parts.lightingState);
    applyColorSetToWells(m_parts.outlets, m_parts.lightingState.keyboardColorSet, m_parts.canvas);
    m_parts.outlets.actionBarEffectCheckbox.on.set(m_parts.lightingState.useSpellCooldowns[0]);
    applyCanvasColors();
    showSelectedProfile();
    m_parts.runLoop.post([this] {
        m_parts.outlets.colorProgrammerWindow.bringToFront();
        m_parts.outlets.keyboardCanvas.displayNeeded.emit();
    });
    // After that job is posted: in a window that is open already, what both ask for is drawn once.
    if (m_parts.options.useSingleColorMode)
        singleColorModeCheck();
    m_parts.messages.confirmCalibrate = true;
}

void ColorProgrammer::applyCanvasColors() {
    m_parts.canvas.fillIfEmpty(m_parts.lightingState);
    m_parts.lightingState.keyboardColorBitmap.at(
        static_cast<std::size_t>(m_parts.profile.activeColorProfile)) =
        lighting::buildColorBitmap(m_parts.canvas.keyColorSet, m_parts.canvas.keysToColors);
    if (!m_parts.options.useSingleColorMode)
        m_parts.lighting.showProfileLighting(m_parts.profile.activeColorProfile);
    m_parts.outlets.autoChatProfileCheckbox.enabled.set(true);
    m_parts.outlets.singleColorModeBtn.enabled.set(true);
    m_parts.defaults.set(settings::kAutoToggleProfile.key, m_parts.options.autoToggleProfile2);
    m_parts.defaults.set(settings::kSingleColorMode.key, m_parts.options.useSingleColorMode);
}

void ColorProgrammer::singleColorModeCheck() {
    const bool on = m_parts.outlets.singleColorModeBtn.on.get();
    m_parts.options.useSingleColorMode = on;
    m_parts.lightingState.singleColorFlag = on;
    if (on)
        m_parts.outlets.actionBarEffectCheckbox.on.set(false);
    m_parts.outlets.actionBarEffectCheckbox.enabled.set(!on);
    m_parts.outlets.cooldownPreviewBtn.enabled.set(!on);
    if (on)
        m_parts.cooldowns.showCooldowns(false);
    applyCanvasColors();
    m_parts.outlets.keyboardCanvas.displayNeeded.emit();
    m_parts.defaults.set(settings::kSingleColorMode.key, m_parts.options.useSingleColorMode);
}

void ColorProgrammer::autoToggleProfileClicked() {
    takeOption(m_parts.defaults, settings::kAutoToggleProfile, m_parts.options.autoToggleProfile2,
               m_parts.outlets.autoChatProfileCheckbox);
}

void ColorProgrammer::combatChatWarningClicked() {
    takeOption(m_parts.defaults, settings::kCombatChatWarning, m_parts.options.combatChatWarning,
               m_parts.outlets.combatChatAlertCheckbox);
}

void ColorProgrammer::paintingColorPicker() {
    choosePaintColor(m_parts.outlets, m_parts.canvas);
}

void ColorProgrammer::colorWellDropped(const WellColor& dropped) {
    const platform::ColorWell& well = wellOfTag(m_parts.outlets, dropped.tag);
    const int slot = slotOfWell(well);
    m_parts.edits.perform(slot, [&] {
        m_parts.canvas.fillIfEmpty(m_parts.lightingState);
        m_parts.canvas.keyColorSet.at(static_cast<std::size_t>(slot)) = well.color.get();
        m_parts.outlets.keyboardCanvas.displayNeeded.emit();
        m_parts.profile.profileTouched = true;
    });
}

void ColorProgrammer::colorWellRestored(const WellColor& restored) {
    colorWellDropped(restored);
    m_parts.edits.settleTouched();
}

void ColorProgrammer::colorOK() {
    m_parts.store.saveProfile(m_parts.profile.activeColorProfile);
    closeWindow();
    m_parts.cooldowns.blinkTimeChanged();
}

void ColorProgrammer::colorCancel() {
    m_parts.store.loadProfile(m_parts.profile.activeColorProfile);
    m_parts.lighting.showProfileLighting(m_parts.profile.activeColorProfile);
    if (m_parts.options.useSingleColorMode)
        setAllToColorA();
    closeWindow();
}

void ColorProgrammer::profileSelectPopup() {
    const int chosen = m_parts.outlets.currentProfilePopup.selected.get() + 1;
    if (chosen == m_parts.profile.activeColorProfile)
        return;
    if (!m_parts.unsavedEdits.settle()) {
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
        m_parts.store.loadProfile(chosen);
        m_parts.profile.activeColorProfile = chosen;
    } else {
        showSelectedProfile();
        return;
    }
    showLoadedProfile();
    if (overwritten)
        m_parts.edits.replaced(std::move(*overwritten));
}

std::optional<EditState> ColorProgrammer::copyProfile() {
    m_parts.outlets.fromProfileMenu.selected.set(m_parts.profile.activeColorProfile - 1);
    m_parts.outlets.toProfileMenu.selected.set(m_parts.profile.activeColorProfile %
                                               static_cast<int>(lighting::kProfileCount));
    copyProfileSameSame();
    const int answer = m_parts.windows.runModal(m_parts.outlets.copyProfileDialog);
    m_parts.outlets.copyProfileDialog.visible.set(false);
    const int from = m_parts.outlets.fromProfileMenu.selected.get() + 1;
    const int to = m_parts.outlets.toProfileMenu.selected.get() + 1;
    if (answer != kCopy || !isProfile(from) || !isProfile(to))
        return std::nullopt;
    EditState overwritten = m_parts.edits.stored(to);
    m_parts.store.loadProfile(from);
    m_parts.canvas.fillFrom(m_parts.lightingState);
    m_parts.outlets.actionBarEffectCheckbox.on.set(m_parts.lightingState.useSpellCooldowns[0]);
    m_parts.profile.activeColorProfile = to;
    m_parts.store.saveProfile(to);
    m_parts.store.loadProfile(to);
    return overwritten;
}

void ColorProgrammer::copyProfileSameSame() {
    m_parts.outlets.copyProfileCopyBtn.enabled.set(m_parts.outlets.fromProfileMenu.selected.get() !=
                                                   m_parts.outlets.toProfileMenu.selected.get());
}

void ColorProgrammer::showProfile(const ButtonTag& button) {
    if (!isProfile(button.tag))
        return;
    m_parts.dispatcher.switchToProfile(button.tag);
    // Loading gives the canvas the flag of what it loads.
    m_parts.canvas.usingActionbarCooldowns = canvasShowsCooldowns();
}

bool ColorProgrammer::canvasShowsCooldowns() const {
    return m_parts.lightingState.useSpellCooldowns.at(static_cast<std::size_t>(m_parts.canvas.profile));
}

void ColorProgrammer::showLoadedProfile() {
    applyColorSetToWells(m_parts.outlets, m_parts.lightingState.keyboardColorSet, m_parts.canvas);
    m_parts.canvas.fillFrom(m_parts.lightingState);
    m_parts.outlets.actionBarEffectCheckbox.on.set(m_parts.lightingState.useSpellCooldowns[0]);
    if (m_parts.options.useSingleColorMode)
        setAllToColorA();
    m_parts.outlets.keyboardCanvas.displayNeeded.emit();
    m_parts.profile.profileTouched = false;
}

void ColorProgrammer::showSelectedProfile() {
    m_parts.outlets.currentProfilePopup.selected.set(m_parts.profile.activeColorProfile - 1);
}

void ColorProgrammer::setAllToColorA() {
    m_parts.lighting.setAllKeysColor(m_parts.lightingState.keyboardColorSet[lighting::kColorASlot]);
}

void ColorProgrammer::closeWindow() {
    m_parts.windows.hideColorPanel();
    m_parts.outlets.colorProgrammerWindow.visible.set(false);
    m_parts.profile.profileTouched = false;
}

} // namespace glimra::app
