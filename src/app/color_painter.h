#pragma once

#include "app/action_argument.h"
#include "app/canvas_edits.h"
#include "lighting/lighting_output.h"
#include "platform/controls.h"
#include "profiles/canvas_buffer.h"
#include "profiles/profile_state.h"

#include <functional>

namespace glimra::app {

/// The on-screen keyboard on which a profile is painted. Every drawing also lights each key on the keyboard,
/// so that the keyboard shows the profile while it is edited. Main thread.
class ColorPainter {
public:
    struct Parts {
        lighting::LightingOutput& lighting;
        CanvasEdits& edits;
        profiles::CanvasBuffer& buffer;
        profiles::ProfileState& profile;
        platform::CanvasView& view;
        const bool& useSingleColorMode;
    };

    /// Appends the codes of its keys, ascending, to `canvasKeyCodes`.
    ColorPainter(const Parts& parts, profiles::CanvasKeyCodes& canvasKeyCodes);

    /// Gets the colour of a key, which is told by its place in `kKeyboardLayout`.
    using ShowKey = std::function<void(std::size_t index, const lighting::Color& color)>;
    /// Shows all keys and lights them, in the order of their codes. Not before the editor was opened, and
    /// only while its window is shown.
    void drawKeys(const ShowKey& showKey);

    /// Both paint the key at a point, if there is one; a click beside the keys counts as an edit too. What is
    /// dragged over is one step to undo with the click before.
    void mouseDown(const CanvasPoint& point);
    void mouseDragged(const CanvasPoint& point);

private:
    void paintKey(const CanvasPoint& point);
    lighting::Color keyColor(lighting::KeyCode code) const;

    Parts m_parts;
};

} // namespace glimra::app
