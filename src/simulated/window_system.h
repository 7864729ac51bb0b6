#pragma once

#include "platform/window_system.h"

#include <deque>
#include <functional>
#include <utility>

namespace glimra::simulated {

/// What the user does in a modal session: changes `settings` one after the other, then ends it with `code`.
struct ModalAnswer {
    int code = 0;
    std::vector<std::function<void()>> settings;
};

/// Windows without a screen; the user's answers are queued in advance. Nothing waits: a modal session ends as
/// soon as its answer has been carried out, and one without an answer ends with 0.
class SimulatedWindowSystem final : public platform::WindowSystem {
public:
    void queueAnswer(ModalAnswer answer) { m_answers.push_back(std::move(answer)); }
    /// Sets the path for the next panel of either kind. A panel without a queued path is cancelled.
    void queuePath(std::string path) { m_paths.push_back(std::move(path)); }

    void restoreFrame(std::string_view) override {}
    void saveFrame(std::string_view) override {}
    int runModal(platform::Window& window) override;
    /// Does nothing: a session ends with the code of its answer.
    void stopModal(int) override {}
    std::optional<std::string> runSavePanel(const platform::SavePanel&) override { return nextPath(); }
    std::optional<std::string> runOpenPanel(const platform::OpenPanel&) override { return nextPath(); }
    void runAlert(const platform::Alert&) override {}
    void showSheet(const platform::Alert&) override {}
    void hideColorPanel() override {}
    std::optional<std::string> documentsFolder() override { return "/home/player/Documents"; }

private:
    std::optional<std::string> nextPath();

    std::deque<ModalAnswer> m_answers;
    std::deque<std::string> m_paths;
};

} // namespace glimra::simulated
