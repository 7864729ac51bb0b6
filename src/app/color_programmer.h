#pragma once

#include "app/action_argument.h"
#include "app/canvas_edits.h"
#include "app/outlets.h"
#include "app/unsaved_edits.h"
#include "events/cooldown_display.h"
#include "events/dispatcher.h"
#include "platform/message_log.h"

namespace glimra::app {

/// The window in which a profile is painted: colours, wells, the nine profiles and the options around them.
/// Main thread.
class ColorProgrammer {
public:
    struct Parts {
        platform::RunLoop& runLoop;
        platform::WindowSystem& windows;
        platform::UserDefaults& defaults;
        platform::SystemLog& systemLog;
        Outlets& outlets;
        UnsavedEdits& unsavedEdits;
        CanvasEdits& edits;
        lighting::LightingOutput& lighting;
        lighting::LightingState& lightingState;
        profiles::ProfileStore& store;
        profiles::ProfileState& profile;
        profiles::CanvasBuffer& canvas;
        events::CooldownDisplay& cooldowns;
        events::Dispatcher& dispatcher;
        events::OptionState& options;
        events::MessageState& messages;
    };

    explicit ColorProgrammer(const Parts& parts);

    /// Takes the saved options and shows them.
    void loadSingleColorMode();
    void loadAutoToggleProfile();
    void loadCombatChatWarning();

    void openColorProgrammer();
    /// Puts what is painted on the keyboard, and into the active profile's bitmap.
    void applyCanvasColors();

    void singleColorModeCheck();
    void autoToggleProfileClicked();
    void combatChatWarningClicked();

    void paintingColorPicker();
    /// A well has another colour.
    void colorWellDropped(const WellColor& dropped);
    /// A colour was tried and cancelled: its well shows the old colour again. If nothing else was edited, the
    /// profile no longer counts as edited.
    void colorWellRestored(const WellColor& restored);

    void colorOK();
    void colorCancel();

    void profileSelectPopup();
    void copyProfileSameSame();

    /// Shows the profile of a button's tag (1 to 9; another one does nothing) as it is stored, and leaves the
    /// canvas alone.
    void showProfile(const ButtonTag& button);
    /// Whether the profile on the canvas shows cooldowns, whichever the keyboard shows.
    bool canvasShowsCooldowns() const;

private:
    void showSelectedProfile();
    /// The profile that another one was copied over, as it was; none where nothing was copied.
    [[nodiscard]] std::optional<EditState> copyProfile();
    void showLoadedProfile();
    void setAllToColorA();
    void closeWindow();

    Parts m_parts;
};

} // namespace glimra::app
