#pragma once

#include "app/edit_history.h"
#include "app/outlets.h"
#include "profiles/profile_state.h"
#include "profiles/profile_store.h"

#include <functional>

namespace glimra::app {

/// Takes edits of the canvas back, and does them again: painted keys, colours, and a profile that was copied
/// over another. It follows what the canvas holds, and so does not care which profile the keyboard shows.
/// Main thread.
class CanvasEdits {
public:
    struct Parts {
        Outlets& outlets;
        profiles::ProfileStore& store;
        profiles::ProfileState& profile;
        profiles::CanvasBuffer& canvas;
        lighting::LightingState& lighting;
    };

    explicit CanvasEdits(const Parts& parts) : m_parts(parts) {}

    /// Carries out an edit of a subject (`EditHistory`).
    void perform(int subject, const std::function<void()>& edit);
    void endStep() { m_history.endStep(); }
    /// If the last edits have led back to what is stored, the canvas no longer counts as edited.
    void settleTouched();

    /// A stored profile. Hand it to `replaced` when another profile has been stored and shown in its place.
    EditState stored(int profile);
    void replaced(EditState before);

    bool canUndo() const { return m_history.canUndo(now()); }
    bool canRedo() const { return m_history.canRedo(now()); }
    void undo();
    void redo();

private:
    EditState now() const;
    void show(const EditHistory::Target& target);
    void store(const EditState& state);

    Parts m_parts;
    EditHistory m_history;
};

} // namespace glimra::app
