#pragma once

#include "desktop/services/background_worker.h"
#include "desktop/services/process.h"
#include "platform/system_services.h"

#include <memory>
#include <optional>
#include <string_view>

namespace glimra::desktop {

/// Whether something is installed that plays the desktop's sounds.
bool canPlayThemeSounds();

/// Plays the system's named sounds as sounds of the desktop's sound theme, with the player that is installed.
/// `play` hands over and returns. Once the player has failed or hung there is silence: most likely there is
/// no sound device, and each try would cost a process in vain.
class ThemeSounds final : public platform::Sounds {
public:
    explicit ThemeSounds(BackgroundWorker& worker);
    void play(std::string_view name) override;

private:
    BackgroundWorker& m_worker;
    /// What plays "Tink", while that makes sense; the worker's alone from the first errand on.
    std::shared_ptr<std::optional<Command>> m_tink;
};

} // namespace glimra::desktop
