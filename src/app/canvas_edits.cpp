#include "app/canvas_edits.h"

#include "app/color_wells.h"

#include <algorithm>
#include <utility>

namespace glimra::app {

void CanvasEdits::perform(int subject, const std::function<void()>& edit) {
    m_history.begin(now(), !m.profile.profileTouched, subject);
    edit();
    m_history.end(now());
}

void CanvasEdits::settleTouched() {
    m.profile.profileTouched = !m_history.isAsSaved();
}

EditState CanvasEdits::stored(int profile) {
    lighting::ColorSet colors;
    m.store.loadColorSet(colors, profile);
    EditState state{profile, {colors.begin(), colors.end()}, m.lighting.keyToColorMap, false};
    m.store.loadKeyMap(state.keysToColors, profile);
    state.useCooldowns = m.lighting.useSpellCooldowns.at(static_cast<std::size_t>(profile));
    return state;
}

void CanvasEdits::replaced(EditState before) {
    m_history.replaced(std::move(before), now());
}

void CanvasEdits::undo() {
    if (const auto target = m_history.undo(now(), !m.profile.profileTouched))
        show(*target);
}

void CanvasEdits::redo() {
    if (const auto target = m_history.redo(now(), !m.profile.profileTouched))
        show(*target);
}

EditState CanvasEdits::now() const {
    return {m.canvas.profile, m.canvas.keyColorSet, m.canvas.keysToColors,
            m.lighting.useSpellCooldowns.at(static_cast<std::size_t>(m.canvas.profile))};
}

void CanvasEdits::show(const EditHistory::Target& target) {
    m.canvas.keyColorSet = target.state.keyColorSet;
    m.canvas.keysToColors = target.state.keysToColors;
    lighting::ColorSet colors;
    std::ranges::copy(target.state.keyColorSet, colors.begin());
    applyColorSetToWells(m.outlets, colors, m.canvas);
    if (target.isStored)
        store(target.state);
    settleTouched();
    m.outlets.keyboardCanvas.displayNeeded.emit();
}

void CanvasEdits::store(const EditState& state) {
    m.lighting.useSpellCooldowns[0] = state.useCooldowns;
    m.store.saveProfile(state.profile);
    // Its bitmap and flag are up to date then, and in memory is what the keyboard shows.
    m.store.loadProfileWithCooldowns(state.profile);
    m.store.loadProfileWithCooldowns(m.profile.activeColorProfile);
    m.canvas.usingActionbarCooldowns = state.useCooldowns;
    m.outlets.actionBarEffectCheckbox.on.set(state.useCooldowns);
}

} // namespace glimra::app
