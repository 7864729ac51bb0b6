#include "desktop/windows/keyboard_canvas_accessible.h"

#include "lighting/keyboard_layout.h"

#include <QWindow>

namespace glimra::desktop {

namespace {

/// One key. Goes before its canvas does.
class KeyAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    KeyAccessible(KeyboardCanvas* canvas, std::size_t index) : m_canvas(canvas), m_index(index) {}

    bool isValid() const override { return true; }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_canvas->window()->windowHandle(); }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_canvas); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? m_canvas->nameOfKey(m_index) : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override {
        const QRect face = m_canvas->faceAt(m_index).toAlignedRect();
        return {m_canvas->mapToGlobal(face.topLeft()), face.size()};
    }
    QAccessible::Role role() const override { return QAccessible::Button; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.focusable = true;
        state.focused = m_canvas->hasFocus() && m_canvas->focusedIndex() == m_index;
        state.disabled = !m_canvas->isEnabled();
        state.invisible = !m_canvas->isVisible();
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString& name) override {
        if (!m_canvas->isEnabled())
            return;
        if (name == pressAction())
            m_canvas->paintKey(m_index);
        else if (name == setFocusAction())
            m_canvas->focusKey(m_index);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    KeyboardCanvas* m_canvas;
    std::size_t m_index;
};

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
    auto* const canvas = dynamic_cast<KeyboardCanvas*>(object);
    return canvas == nullptr ? nullptr : new KeyboardCanvasAccessible(canvas);
}

} // namespace

KeyboardCanvasAccessible::KeyboardCanvasAccessible(KeyboardCanvas* canvas)
    : QAccessibleWidget(canvas, QAccessible::List),
      m_canvas(canvas) {
    for (std::size_t index = 0; index < lighting::kKeyboardLayout.size(); ++index)
        m_keys.push_back(QAccessible::registerAccessibleInterface(new KeyAccessible(canvas, index)));
}

KeyboardCanvasAccessible::~KeyboardCanvasAccessible() {
    for (const QAccessible::Id key : m_keys)
        QAccessible::deleteAccessibleInterface(key);
}

void KeyboardCanvasAccessible::install() {
    static const bool installed = [] {
        QAccessible::installFactory(makeAccessible);
        return true;
    }();
    (void)installed;
}

int KeyboardCanvasAccessible::childCount() const {
    return static_cast<int>(m_keys.size());
}

QAccessibleInterface* KeyboardCanvasAccessible::child(int index) const {
    if (index < 0 || index >= childCount())
        return nullptr;
    return QAccessible::accessibleInterface(m_keys[static_cast<std::size_t>(index)]);
}

int KeyboardCanvasAccessible::indexOfChild(const QAccessibleInterface* child) const {
    for (int index = 0; index < childCount(); ++index)
        if (this->child(index) == child)
            return index;
    return -1;
}

QAccessibleInterface* KeyboardCanvasAccessible::childAt(int x, int y) const {
    const auto key = m_canvas->keyAt(QPointF(m_canvas->mapFromGlobal(QPoint(x, y))));
    return key ? child(static_cast<int>(*key)) : nullptr;
}

QAccessibleInterface* KeyboardCanvasAccessible::focusChild() const {
    return m_canvas->hasFocus() ? child(static_cast<int>(m_canvas->focusedIndex())) : nullptr;
}

} // namespace glimra::desktop
