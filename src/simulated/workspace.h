#pragma once

#include "platform/workspace.h"

#include <utility>

namespace glimra::simulated {

/// A desktop whose state and events come from the caller.
class SimulatedWorkspace final : public platform::Workspace {
public:
    std::optional<platform::RunningApplication> frontmostApplication() const override { return m_frontmost; }
    void setFrontmostApplication(std::optional<platform::RunningApplication> application) {
        m_frontmost = std::move(application);
        if (m_frontChanged)
            m_frontChanged();
    }
    void observeFront(std::function<void()> changed) override { m_frontChanged = std::move(changed); }

    void observeSleep(std::function<void()> aboutToSleep, std::function<void()> screensDidWake) override {
        m_aboutToSleep = std::move(aboutToSleep);
        m_screensDidWake = std::move(screensDidWake);
    }
    /// Send the notifications; do nothing while there are no handlers.
    void sleep() const {
        if (m_aboutToSleep)
            m_aboutToSleep();
    }
    void wake() const {
        if (m_screensDidWake)
            m_screensDidWake();
    }

    bool openUrl(const std::string&) override { return true; }

private:
    std::optional<platform::RunningApplication> m_frontmost;
    std::function<void()> m_frontChanged;
    std::function<void()> m_aboutToSleep;
    std::function<void()> m_screensDidWake;
};

} // namespace glimra::simulated
