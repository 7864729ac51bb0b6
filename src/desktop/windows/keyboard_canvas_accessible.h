#pragma once

#include "desktop/windows/keyboard_canvas.h"

#include <QAccessibleWidget>

#include <vector>

namespace glimra::desktop {

/// What assistive technology sees of the canvas: a list of keys, each a button with a name, a place, the
/// focus, and "press" to paint it. Belongs to Qt's registry of such objects.
class KeyboardCanvasAccessible final : public QAccessibleWidget {
public:
    explicit KeyboardCanvasAccessible(KeyboardCanvas* canvas);
    ~KeyboardCanvasAccessible() override;

    /// Has Qt make one of these for every canvas.
    static void install();

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

private:
    KeyboardCanvas* m_canvas;
    /// The keys' ids in the registry, by place in the layout.
    std::vector<QAccessible::Id> m_keys;
};

} // namespace glimra::desktop
