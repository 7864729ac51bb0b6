#pragma once

#include "app/app_delegate.h"
#include "desktop/windows/interface_binder.h"
#include "desktop/windows/qt_window_system.h"

#include <functional>
#include <string_view>

namespace glimra::desktop {

/// Stands between the windows and the application, so that nothing is lost of what was painted. The
/// application means the profile that the keyboard shows, and the game may change that at any time; a player
/// means the one on the canvas. So whatever concerns the canvas is sent with that profile shown, and the
/// other one is shown again afterwards. And whatever would take the canvas away asks first. Main thread.
class PainterGuard {
public:
    struct Parts {
        InterfaceBinder& binder;
        app::AppDelegate& delegate;
        QtWindowSystem& windowSystem;
        platform::RunLoop& runLoop;
        /// Asks the application to quit.
        std::function<void()> quit;
        /// Whether the main window's close box leaves the program in the tray.
        std::function<bool()> staysInTray;
    };

    /// Takes the binder's route.
    explicit PainterGuard(const Parts& parts);

    /// The user wants to quit. Nothing happens while a question is open, or if the user rather goes on
    /// editing.
    void quit();

private:
    struct Action {
        const app::ActionRow& row;
        const app::ActionArgument& argument;
    };
    struct Rule;

    void send(const Action& action);
    void perform(const Action& action) { m_parts.binder.perform(action.row, action.argument); }
    void openPainter(const Action& action);
    void openSetter(const Action& action);
    void close(const Action& action);
    void showProfile(const Action& action);
    void importProfiles(const Action& action);
    void preview(const Action& action);
    void endPainting(const Action& action);
    void performForCanvas(const Action& action);

    enum class Afterwards { AsItWas, FromTheStore };
    /// Performs an action that concerns the canvas while the keyboard shows the canvas's profile. Afterwards
    /// the keyboard shows the profile from before again, unless the user has chosen one, or when its light
    /// must be taken from the stored profile anew.
    void forCanvas(Afterwards light, const std::function<void()>& act);
    /// False when the user wants to go on editing.
    [[nodiscard]] bool leavePainter();
    void showOnKeyboard(int profile);
    bool painterShows() const;

    Parts m_parts;
};

} // namespace glimra::desktop
