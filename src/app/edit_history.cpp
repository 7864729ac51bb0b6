#include "app/edit_history.h"

#include <utility>

namespace glimra::app {

void EditHistory::begin(const EditState& now, bool isSaved, int subject) {
    if (!now.isLike(m_last))
        forget();
    if (isSaved)
        m_saved = m_undo.size();
    if (m_open == subject)
        return;
    m_undo.push_back({now});
    m_open = subject;
}

void EditHistory::end(const EditState& now) {
    m_last = now;
    const EditState& before = m_undo.back().state;
    if (now.isLike(before)) {
        m_undo.pop_back();
        m_open.reset();
        return;
    }
    // An edit may be what first fills the canvas: before it there was no profile to go back to.
    if (now.profile != before.profile)
        return forget();
    m_redo.clear();
    if (m_saved >= m_undo.size())
        m_saved.reset();
    if (m_undo.size() <= kMostSteps)
        return;
    m_undo.erase(m_undo.begin());
    if (m_saved)
        m_saved = *m_saved == 0 ? std::nullopt : std::optional(*m_saved - 1);
}

void EditHistory::replaced(EditState before, const EditState& now) {
    forget();
    m_undo.push_back({std::move(before), true});
    m_last = now;
    m_saved = m_undo.size();
}

std::optional<EditHistory::Target> EditHistory::undo(const EditState& now, bool isSaved) {
    return canUndo(now) ? step(m_undo, m_redo, now, isSaved) : std::nullopt;
}

std::optional<EditHistory::Target> EditHistory::redo(const EditState& now, bool isSaved) {
    return canRedo(now) ? step(m_redo, m_undo, now, isSaved) : std::nullopt;
}

std::optional<EditHistory::Target> EditHistory::step(Steps& from, Steps& to, const EditState& now,
                                                     bool isSaved) {
    if (isSaved)
        m_saved = m_undo.size();
    Target target = std::move(from.back());
    from.pop_back();
    to.push_back({now, target.isStored});
    m_last = target.state;
    m_open.reset();
    if (target.isStored)
        m_saved = m_undo.size();
    return target;
}

void EditHistory::forget() {
    m_undo.clear();
    m_redo.clear();
    m_open.reset();
    m_saved.reset();
}

} // namespace glimra::app
