#include "app/action_key_setter.h"

#include <algorithm>

namespace glimra::app {

namespace {

platform::PopUp& menuOfSlot(Outlets& outlets, const profiles::ActionSlot& slot) {
    KeyMenus& menus = slot.number < 200 ? outlets.menu1 : slot.number < 600 ? outlets.menu5 : outlets.menu6;
    return menus[slot.index];
}

} // namespace

ActionKeySetter::ActionKeySetter(const Parts& parts) : m_parts(parts) {
}

void ActionKeySetter::fillKeyMenusArray() {
    for (const profiles::ActionSlot& slot : profiles::actionSlots())
        keyMenusArray.push_back(&menuOfSlot(m_parts.outlets, slot));
}

void ActionKeySetter::openWindowToMapKeys() {
    if (!m_parts.unsavedEdits.settle())
        return;
    m_parts.store.loadProfile(m_parts.profile.activeColorProfile);
    m_parts.canvas.fillFrom(m_parts.lightingState);
    m_parts.outlets.actionBarEffectCheckbox.on.set(m_parts.lightingState.useSpellCooldowns[0]);
    m_parts.profile.profileTouched = false;
    m_parts.outlets.colorProgrammerWindow.visible.set(false);
    fillMenus();
    m_parts.outlets.actionKeySetterWindow.bringToFront();
}

void ActionKeySetter::fillMenus() {
    const std::vector<std::string> names = lighting::sortedKeyDisplayNames();
    m_parts.saveActionBarKeyMap.clear();
    for (std::size_t i = 0; i < keyMenusArray.size(); ++i) {
        const lighting::KeyCode key = profiles::keyOfSlot(m_parts.keys, profiles::actionSlots()[i]);
        keyMenusArray[i]->titles.set(names);
        keyMenusArray[i]->selectTitle(lighting::displayNameOfKey(key).value_or(""));
        m_parts.saveActionBarKeyMap.push_back(key);
    }
}

void ActionKeySetter::actionKeyMenuClick(const ItemTitle& item, int number) {
    const std::span<const profiles::ActionSlot> slots = profiles::actionSlots();
    const auto slot = std::ranges::find(slots, number, &profiles::ActionSlot::number);
    if (slot == slots.end())
        return;
    if (const std::optional<lighting::KeyCode> key = lighting::keyOfDisplayName(item.title))
        profiles::keyOfSlot(m_parts.keys, *slot) = *key;
}

void ActionKeySetter::actionKeySetterOK() {
    profiles::saveActionKeyMap(m_parts.keys, m_parts.defaults);
    m_parts.closer.close(m_parts.outlets.actionKeySetterWindow);
}

void ActionKeySetter::actionKeySetterCanx() {
    for (std::size_t i = 0; i < m_parts.saveActionBarKeyMap.size(); ++i)
        profiles::keyOfSlot(m_parts.keys, profiles::actionSlots()[i]) = m_parts.saveActionBarKeyMap[i];
    m_parts.closer.close(m_parts.outlets.actionKeySetterWindow);
}

} // namespace glimra::app
