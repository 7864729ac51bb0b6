#include "desktop/windows/keyboard_view_accessible.h"

#include "desktop/windows/color_name.h"
#include "desktop/windows/key_name.h"
#include "desktop/windows/keyboard_view.h"
#include "lighting/keyboard_layout.h"

#include <QAccessibleWidget>
#include <QMap>
#include <QStringList>

#include <algorithm>

namespace glimra::desktop {

namespace {

QString keysByColor(const keyboards::KeyColors& colors) {
    QMap<QString, QStringList> keys;
    for (std::size_t index = 0; index < colors.size(); ++index) {
        const keyboards::Rgb& rgb = colors[index];
        keys[colorName({rgb.red / 255.0, rgb.green / 255.0, rgb.blue / 255.0})].append(
            plainKeyName(lighting::kKeyboardLayout[index].code));
    }
    const auto most =
        std::ranges::max_element(keys, {}, [](const QStringList& names) { return names.size(); });
    QStringList parts;
    for (auto color = keys.cbegin(); color != keys.cend(); ++color)
        if (color.key() != most.key())
            parts.append(color.key() + ": " + color.value().join(", "));
    parts.append(most.key() + (parts.isEmpty() ? ": all keys" : ": all others"));
    return parts.join("; ");
}

class KeyboardViewAccessible final : public QAccessibleWidget {
public:
    explicit KeyboardViewAccessible(KeyboardView* view)
        : QAccessibleWidget(view, QAccessible::Graphic),
          m_view(view) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Description ? keysByColor(m_view->shownColors())
                                                : QAccessibleWidget::text(kind);
    }

private:
    KeyboardView* m_view;
};

QAccessibleInterface* makeViewAccessible(const QString&, QObject* object) {
    auto* const view = dynamic_cast<KeyboardView*>(object);
    return view == nullptr ? nullptr : new KeyboardViewAccessible(view);
}

} // namespace

void installKeyboardViewAccessible() {
    QAccessible::removeFactory(makeViewAccessible);
    QAccessible::installFactory(makeViewAccessible);
}

} // namespace glimra::desktop
