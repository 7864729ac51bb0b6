#include "app/action_key_setter.h"

#include <algorithm>

namespace glimra::app {

namespace {

platform::PopUp& menuOfSlot(Outlets& outlets, const profiles::ActionSlot& slot) {
    KeyMenus& menus = slot.number < 200 ? outlets.menu1 : slot.number < 600 ? outlets.menu5 : outlets.menu6;
    return menus[slot.index];
}

} // namespace

ActionKeySetter::ActionKeySetter(const Parts& parts) : m(parts) {
}

void ActionKeySetter::fillKeyMenusArray() {
    for (const profiles::ActionSlot& slot : profiles::actionSlots())
        keyMenusArray.push_back(&menuOfSlot(m.outlets, slot));
}

void ActionKeySetter::openWindowToMapKeys() {
    if (!m.unsavedEdits.settle())
        return;
    m.store.loadProfile(m.profile.activeColorProfile);
    m.canvas.fillFrom(m.lightingState);
    m.outlets.actionBarEffectCheckbox.on.set(m.lightingState.useSpellCooldowns[0]);
    m.profile.profileTouched = false;
    m.outlets.colorProgrammerWindow.visible.set(false);
    fillMenus();
    m.outlets.actionKeySetterWindow.bringToFront();
}

void ActionKeySetter::fillMenus() {
    const std::vector<std::string> names = lighting::sortedKeyDisplayNames();
    m.saveActionBarKeyMap.clear();
    for (std::size_t i = 0; i < keyMenusArray.size(); ++i) {
        const lighting::KeyCode key = profiles::keyOfSlot(m.keys, profiles::actionSlots()[i]);
        keyMenusArray[i]->titles.set(names);
        keyMenusArray[i]->selectTitle(lighting::displayNameOfKey(key).value_or(""));
        m.saveActionBarKeyMap.push_back(key);
    }
}

void ActionKeySetter::actionKeyMenuClick(const ItemTitle& item, int number) {
    const std::span<const profiles::ActionSlot> slots = profiles::actionSlots();
    const auto slot = std::ranges::find(slots, number, &profiles::ActionSlot::number);
    if (slot == slots.end())
        return;
    if (const std::optional<lighting::KeyCode> key = lighting::keyOfDisplayName(item.title))
        profiles::keyOfSlot(m.keys, *slot) = *key;
}

void ActionKeySetter::actionKeySetterOK() {
    profiles::saveActionKeyMap(m.keys, m.defaults);
    m.closer.close(m.outlets.actionKeySetterWindow);
}

void ActionKeySetter::actionKeySetterCanx() {
    for (std::size_t i = 0; i < m.saveActionBarKeyMap.size(); ++i)
        profiles::keyOfSlot(m.keys, profiles::actionSlots()[i]) = m.saveActionBarKeyMap[i];
    m.closer.close(m.outlets.actionKeySetterWindow);
}

} // namespace glimra::app
