#pragma once

#include "app/app_delegate.h"
#include "desktop/windows/interface_binder.h"
#include "screenlink/demonstration.h"

#include <functional>
#include <string_view>

namespace glimra::desktop {

/// Plays the demonstration in the window and on the keyboard: an evening in the game, without the game. Main
/// thread.
class Demonstration {
public:
    enum class State {
        /// It was not played in this run.
        None,
        Playing,
        Played,
        /// It did not come to its end.
        Stopped
    };

    struct Parts {
        screenlink::DemonstrationCapture& capture;
        app::AppDelegate& delegate;
        InterfaceBinder& binder;
        platform::RunLoop& runLoop;
        /// Puts a token into the message queue, where a recording sees it.
        std::function<void(std::string_view)> sendToken;
    };

    explicit Demonstration(const Parts& parts);

    /// Plays it from the beginning. While the game's own light is on, a line of the log says why not.
    void play();
    /// Ends what it has lit, and shows the profile from before.
    void stop();

    platform::Property<State> state{State::None};

private:
    enum class Afterwards { ProfileFromBefore, ProfileAsItIs };

    bool gameIsHere() const;
    void yieldTo(std::string_view selector);
    void over(screenlink::DemonstrationCapture::End how);
    /// The light that it leaves behind is ended by the messages that end it in the game.
    void cleanUp(Afterwards afterwards);

    Parts m_parts;
    int m_profileBefore = 1;
    Afterwards m_afterwards = Afterwards::ProfileFromBefore;
};

} // namespace glimra::desktop
