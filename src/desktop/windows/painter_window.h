#pragma once

#include "app/app_delegate.h"
#include "desktop/windows/edited_profile.h"
#include "desktop/windows/interface_binder.h"
#include "desktop/windows/keyboard_canvas.h"
#include "desktop/windows/paint_tools.h"
#include "desktop/windows/swatch_names.h"
#include "platform/run_loop.h"
#include "platform/user_defaults.h"

#include <memory>

namespace glimra::desktop {

/// What the window in which a profile is painted does beyond its design: it draws the canvas once for however
/// many changes, greys out what would do nothing, and warns of colours that are hard to tell apart. Main
/// thread.
class PainterWindow {
public:
    struct Parts {
        app::AppDelegate& delegate;
        InterfaceBinder& binder;
        platform::RunLoop& runLoop;
        platform::UserDefaults& userDefaults;
    };

    /// Before the window is bound.
    PainterWindow(QWidget* window, const Parts& parts);
    /// Once it is bound.
    void takeOver();

private:
    void connectParts();
    void askForCanvas();
    void showState();
    void showPaletteWarning();
    QString colorNameOfKey(lighting::KeyCode code) const;

    QWidget* m_window;
    Parts m_parts;
    KeyboardCanvas* m_canvas;
    SwatchNames m_names;
    PaintTools m_tools;
    EditedProfile m_editedProfile;
    bool m_canvasIsAsked = false;
};

} // namespace glimra::desktop
