#pragma once

#include "app/app_delegate.h"
#include "desktop/desktop_platform.h"
#include "desktop/options.h"
#include "desktop/windows/interface_binder.h"
#include "desktop/windows/program_watch.h"

#include <functional>
#include <memory>
#include <string_view>

namespace glimra::desktop {

/// How the user meets the application: in windows, or only by commands from other starts of the program. Main
/// thread.
class UserInterface {
public:
    virtual ~UserInterface() = default;

    virtual InterfaceBinder& binder() = 0;
    /// Calls `launch`, in which the application shows its main window.
    virtual void launch(const std::function<void()>& launch) = 0;
    /// Returns false where there is no window to bring.
    virtual bool bringToFront() = 0;
    /// The settings were changed from outside.
    virtual void takeChangedSettings() = 0;
    /// Looks at what the program sees and does.
    virtual const StatusSnapshot& look() = 0;

    struct Parts {
        const Options& options;
        DesktopPlatform& machine;
        app::AppDelegate& delegate;
        std::function<void()> quit;
        /// Puts a token into the message queue, where a recording sees it.
        std::function<void(std::string_view)> sendToken;
    };
};

/// All windows and the icon in the tray; needs a QApplication.
std::unique_ptr<UserInterface> makeWindows(const UserInterface::Parts& parts);
/// No windows; needs nothing but a QCoreApplication.
std::unique_ptr<UserInterface> makeBareInterface(const UserInterface::Parts& parts);

} // namespace glimra::desktop
