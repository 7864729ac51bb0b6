#pragma once

#include "platform/controls.h"
#include "platform/window_system.h"

#include <string_view>

namespace glimra::desktop {

/// Where the application runs without windows: nobody answers a question, and what an alert says goes to the
/// log.
class NoWindows final : public platform::WindowSystem {
public:
    /// `told` takes sentences for the log.
    explicit NoWindows(platform::Signal<std::string_view>& told) : m_told(told) {}

    void restoreFrame(std::string_view) override {}
    void saveFrame(std::string_view) override {}
    int runModal(platform::Window&) override { return platform::kModalClosed; }
    void stopModal(int) override {}
    std::optional<std::string> runSavePanel(const platform::SavePanel&) override { return std::nullopt; }
    std::optional<std::string> runOpenPanel(const platform::OpenPanel&) override { return std::nullopt; }
    void runAlert(const platform::Alert& alert) override { m_told.emit(alert.title + ": " + alert.text); }
    void showSheet(const platform::Alert& alert) override { runAlert(alert); }
    void hideColorPanel() override {}
    std::optional<std::string> documentsFolder() override { return std::nullopt; }

private:
    platform::Signal<std::string_view>& m_told;
};

} // namespace glimra::desktop
