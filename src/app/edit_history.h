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

    /// The same edits lead to both; the cooldown flag is none of them.
    bool isLike(const EditState& other) const {
        return profile == other.profile && keyColorSet == other.keyColorSet &&
               keysToColors == other.keysToColors;
    }
};

/// What was done to a profile on the canvas, step by step, so that it can be taken back and done again. It
/// holds as long as the canvas is as the last step left it: what comes there from elsewhere has no steps.
class EditHistory {
public:
    static constexpr std::size_t kMostSteps = 200;
    /// Edits of one subject that follow each other are one step: a slot's colour (0 to 12), or this.
    static constexpr int kStroke = -1;

    /// Where a step leads.
    struct Target {
        EditState state;
        /// It replaced what was stored, and so has to do whoever takes it back.
        bool isStored = false;
    };

    /// Around an edit. `isSaved`: the canvas is as it is stored.
    void begin(const EditState& now, bool isSaved, int subject);
    void end(const EditState& now);
    /// The next edit is a step of its own, whatever its subject.
    void endStep() { m_open.reset(); }
    /// A whole profile was replaced, in the store as well.
    void replaced(EditState before, const EditState& now);

    bool canUndo(const EditState& now) const { return !m_undo.empty() && now.isLike(m_last); }
    bool canRedo(const EditState& now) const { return !m_redo.empty() && now.isLike(m_last); }
    /// What the canvas is to hold from now on; none where there is nothing to take back, or to do again.
    std::optional<Target> undo(const EditState& now, bool isSaved);
    std::optional<Target> redo(const EditState& now, bool isSaved);
    /// The steps have led back to what is stored.
    bool isAsSaved() const { return m_saved == m_undo.size(); }

private:
    using Steps = std::vector<Target>;

    void forget();
    std::optional<Target> step(Steps& from, Steps& to, const EditState& now, bool isSaved);

    /// What was before each step, and what was after each that was taken back.
    Steps m_undo;
    Steps m_redo;
    /// As the last step left the canvas.
    EditState m_last;
    /// Subject of the last step while it goes on.
    std::optional<int> m_open;
    /// How many steps lead to what is stored; none when no number does.
    std::optional<std::size_t> m_saved;
};

} // namespace glimra::app
