#include "app/canvas_edits.h"

#include "app/color_wells.h"

#include <algorithm>
#include <utility>

namespace glimra::app {

void CanvasEdits::perform(int subject, const std::function<void()>& edit) {
    m_history.begin(now(), !m_parts.profile.profileTouched, subject);
    edit();
    m_history.end(now());
}

void CanvasEdits::settleTouched() {
    m_parts.profile.profileTouched = !m_history.isAsSaved();
}

EditState CanvasEdits::stored(int profile) {
    lighting::ColorSet colors;
    m_parts.store.loadColorSet(colors, profile);
    EditState state{profile, {colors.begin(), colors.end()}, m_parts.lighting.keyToColorMap, false};
    m_parts.store.loadKeyMap(state.keysToColors, profile);
    state.useCooldowns = m_parts.lighting.useSpellCooldowns.at(static_cast<std::size_t>(profile));
    return state;
}

void CanvasEdits::replaced(EditState before) {
    m_history.replaced(std::move(before), now());
}

void CanvasEdits::undo() {
    if (const auto target = m_history.undo(now(), !m_parts.profile.profileTouched))
        show(*target);
}

void CanvasEdits::redo() {
    if (const auto target = m_history.redo(now(), !m_parts.profile.profileTouched))
        show(*target);
}

EditState CanvasEdits::now() const {
    return {m_parts.canvas.profile, m_parts.canvas.keyColorSet, m_parts.canvas.keysToColors,
            m_parts.lighting.useSpellCooldowns.at(static_cast<std::size_t>(m_parts.canvas.profile))};
}

void CanvasEdits::show(const EditHistory::Target& target) {
    m_parts.canvas.keyColorSet = target.state.keyColorSet;
    m_parts.canvas.keysToColors = target.state.keysToColors;
    lighting::ColorSet colors;
    std::ranges::copy(target.state.keyColorSet, colors.begin());
    applyColorSetToWells(m_parts.outlets, colors, m_parts.canvas);
    if (target.isStored)
        store(target.state);
    settleTouched();
    m_parts.outlets.keyboardCanvas.displayNeeded.emit();
}

void CanvasEdits::store(const EditState& state) {
    m_parts.lighting.useSpellCooldowns[0] = state.useCooldowns;
    m_parts.store.saveProfile(state.profile);
    // Its bitmap and flag are up to date then, and in memory is what the keyboard shows.
    m_parts.store.loadProfileWithCooldowns(state.profile);
    m_parts.store.loadProfileWithCooldowns(m_parts.profile.activeColorProfile);
    m_parts.canvas.usingActionbarCooldowns = state.useCooldowns;
    m_parts.outlets.actionBarEffectCheckbox.on.set(state.useCooldowns);
}

} // namespace glimra::app
