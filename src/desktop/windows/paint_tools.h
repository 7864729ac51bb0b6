#pragma once

#include "desktop/windows/interface_binder.h"
#include "desktop/windows/keyboard_canvas.h"

#include <QAbstractButton>

#include <functional>
#include <vector>

namespace glimra::desktop {

enum class PaintTool { Brush, Row, Group, PickUp };

/// The keys that a tool paints where it is used on a key, as places in `lighting::kKeyboardLayout`, that key
/// first: itself; all keys of its row; or those of its kind, as all letters or all arrows. None to pick up.
std::vector<std::size_t> keysOf(PaintTool tool, std::size_t pressed);

/// The key at a point of the layout, as its place there.
std::optional<std::size_t> keyAtPoint(const QPointF& point);

/// What a press on the canvas does: it paints one key, or several as one step to undo, or picks up the key's
/// colour, which the right button always does. All of it is sent as presses and drags on single keys. Main
/// thread.
class PaintTools {
public:
    /// Before the canvas is bound, for its commands.
    PaintTools(QWidget* painter, KeyboardCanvas& canvas, InterfaceBinder& binder,
               const profiles::CanvasBuffer& buffer);

    /// After the canvas is bound: from now on it is used with the chosen tool.
    void takeOver();

private:
    void choose(PaintTool tool);
    void press(const QPointF& point);
    void drag(const QPointF& point);
    void paintAll();
    void pickUp(std::size_t key);
    void paint(const std::vector<std::size_t>& keys, bool isNewStep);

    QWidget* m_painter;
    KeyboardCanvas& m_canvas;
    InterfaceBinder& m_binder;
    const profiles::CanvasBuffer& m_buffer;
    PaintTool m_tool = PaintTool::Brush;
    /// The key that a drag is over.
    std::optional<std::size_t> m_last;
    std::function<void(QPointF)> m_pressOne;
    std::function<void(QPointF)> m_dragOne;
};

} // namespace glimra::desktop
