#pragma once

#include "desktop/services/background_worker.h"
#include "desktop/services/process.h"
#include "platform/system_services.h"

#include <memory>
#include <optional>
#include <string_view>

namespace glimra::desktop {

/// Whether a player for the desktop's sounds is installed.
bool canPlayThemeSounds();

/// Plays named sounds from the desktop's sound theme with the installed player. `play` hands the work over
/// and returns. Once the player has failed or hung, no more sounds are played: most likely there is no sound
/// device, and each attempt would waste a process.
class ThemeSounds final : public platform::Sounds {
public:
    explicit ThemeSounds(BackgroundWorker& worker);
    void play(std::string_view name) override;

private:
    BackgroundWorker& m_worker;
    /// The command that plays "Tink"; empty when there is none or it has failed. Used by the worker only,
    /// from the first errand on.
    std::shared_ptr<std::optional<Command>> m_tink;
};

} // namespace glimra::desktop
