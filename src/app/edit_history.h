#pragma once

#include "lighting/lighting_state.h"

#include <optional>
#include <vector>

namespace glimra::app {

/// A profile as the canvas holds it.
struct EditState {
    int profile = 0;
    std::vector<lighting::Color> keyColorSet;
    lighting::KeyMap keysToColors;
    bool useCooldowns = false;

    /// Whether both have the same colours and keys. The cooldown flag is not compared: it is not edited.
    bool isLike(const EditState& other) const {
        return profile == other.profile && keyColorSet == other.keyColorSet &&
               keysToColors == other.keysToColors;
    }
};

/// The steps of editing a profile on the canvas, to undo and redo them. When the canvas no longer is as the
/// last step left it, because another profile was shown for instance, the steps are forgotten.
class EditHistory {
public:
    static constexpr std::size_t kMostSteps = 200;
    /// Edits of one subject that follow each other are one step: a slot's colour (0 to 12), or this.
    static constexpr int kStroke = -1;

    /// Where a step leads.
    struct Target {
        EditState state;
        /// The step replaced a stored profile, so undoing it must store the old one again.
        bool isStored = false;
    };

    /// Called before and after an edit. `isSaved`: the canvas is as it is stored.
    void begin(const EditState& now, bool isSaved, int subject);
    void end(const EditState& now);
    /// The next edit is a step of its own, whatever its subject.
    void endStep() { m_open.reset(); }
    /// A whole profile was replaced, in the store as well.
    void replaced(EditState before, const EditState& now);

    bool canUndo(const EditState& now) const { return !m_undo.empty() && now.isLike(m_last); }
    bool canRedo(const EditState& now) const { return !m_redo.empty() && now.isLike(m_last); }
    /// The state that the canvas must show now; none when there is nothing to undo or redo.
    std::optional<Target> undo(const EditState& now, bool isSaved);
    std::optional<Target> redo(const EditState& now, bool isSaved);
    /// Whether undoing and redoing have led back to what is stored.
    bool isAsSaved() const { return m_saved == m_undo.size(); }

private:
    using Steps = std::vector<Target>;

    void forget();
    std::optional<Target> step(Steps& from, Steps& to, const EditState& now, bool isSaved);

    /// The states before each step, and the states after each step that was undone.
    Steps m_undo;
    Steps m_redo;
    /// The canvas after the last step.
    EditState m_last;
    /// The subject of the last step while more edits can join it.
    std::optional<int> m_open;
    /// The number of steps after which the canvas is as it is stored; none when it never is.
    std::optional<std::size_t> m_saved;
};

} // namespace glimra::app
