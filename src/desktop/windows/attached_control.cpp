#include "desktop/windows/attached_control.h"

#include "app/color_wells.h"
#include "desktop/windows/color_well.h"
#include "desktop/windows/help_view.h"
#include "desktop/windows/keyboard_canvas.h"
#include "desktop/windows/keyboard_view.h"
#include "desktop/windows/paint_button.h"
#include "desktop/windows/qt_colors.h"
#include "desktop/windows/seconds_box.h"
#include "platform/decimal_text.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QVariant>

namespace glimra::desktop {

namespace {

using Attached = std::optional<ShowControl>;

/// Shows a property now and whenever it changes.
template <class Value>
ShowControl mirror(platform::Property<Value>& property, ShowControl show) {
    property.changed.observe([show](const Value&) { show(); });
    show();
    return show;
}

void followEnabled(QWidget* widget, platform::Control& control) {
    // What was drawn as disabled is so for good reason.
    if (widget->testAttribute(Qt::WA_ForceDisabled))
        control.enabled.set(false);
    mirror(control.enabled, [widget, &control] { widget->setEnabled(control.enabled.get()); });
}

Attached attachField(QLineEdit* field, platform::TextField& control) {
    followEnabled(field, control);
    QObject::connect(field, &QLineEdit::textEdited, field,
                     [&control](const QString& text) { control.text.set(text.toStdString()); });
    return mirror(control.text, [field, &control] {
        const QString text = QString::fromStdString(control.text.get());
        if (field->text() != text)
            field->setText(text);
    });
}

/// Only what the user toggles is sent.
void showChecked(QAbstractButton& button, bool on) {
    const QSignalBlocker quietly(button);
    button.setChecked(on);
}

/// Every button of a group shows the colour of the well with its tag.
void followWell(PaintButton* choice, platform::ColorWell& well) {
    mirror(well.color, [choice, &well] { choice->setColor(toQColor(well.color.get())); });
}

/// One way for each kind of control.
struct Attach {
    QObject* object;
    app::Outlets& outlets;

    Attached operator()(platform::Window* control) const {
        auto* const widget = qobject_cast<QWidget*>(object);
        if (widget == nullptr || !widget->isWindow())
            return std::nullopt;
        widget->setVisible(false);
        control->visible.changed.observe([widget](bool visible) { widget->setVisible(visible); });
        control->broughtToFront.observe([widget] {
            widget->setWindowState(widget->windowState() & ~Qt::WindowMinimized);
            widget->raise();
            widget->activateWindow();
        });
        return ShowControl{};
    }

    Attached operator()(platform::TextView*) const { return ifIs(object->inherits("QPlainTextEdit")); }
    Attached operator()(platform::Picture*) const {
        return ifIs(dynamic_cast<KeyboardView*>(object) != nullptr);
    }
    Attached operator()(platform::CanvasView*) const {
        return ifIs(dynamic_cast<KeyboardCanvas*>(object) != nullptr);
    }

    Attached operator()(platform::RadioGroup* control) const {
        std::vector<PaintButton*> choices;
        for (QAbstractButton* const button : object->findChildren<QAbstractButton*>())
            if (auto* const choice = dynamic_cast<PaintButton*>(button))
                choices.push_back(choice);
        auto* const group = qobject_cast<QWidget*>(object);
        if (group == nullptr || choices.empty())
            return std::nullopt;
        followEnabled(group, *control);
        for (PaintButton* const choice : choices)
            followWell(choice, app::wellOfTag(outlets, tagOf(*choice)));
        return mirror(control->selectedTag, [choices, control] {
            for (PaintButton* const choice : choices)
                showChecked(*choice, tagOf(*choice) == control->selectedTag.get());
        });
    }

    Attached operator()(platform::ColorWell* control) const {
        auto* const well = dynamic_cast<ColorWell*>(object);
        if (well == nullptr || tagOf(*well) != control->tag)
            return std::nullopt;
        mirror(control->color, [well, control] { well->setColor(control->color.get()); });
        followEnabled(well, *control);
        return ShowControl{};
    }

    Attached operator()(platform::PopUp* control) const {
        auto* const popUp = qobject_cast<QComboBox*>(object);
        if (popUp == nullptr)
            return std::nullopt;
        if (control->separator >= 0)
            popUp->insertSeparator(control->separator);
        const auto show = [popUp, control] { popUp->setCurrentIndex(control->selected.get()); };
        const auto fill = [popUp, show](const std::vector<std::string>& titles) {
            popUp->clear();
            // An item's title is known by its data; what shows has no spaces around.
            for (const std::string& each : titles) {
                const QString title = QString::fromStdString(each);
                popUp->addItem(title.trimmed(), title);
            }
            show();
        };
        control->titles.changed.observe(fill);
        if (!control->titles.get().empty())
            fill(control->titles.get());
        QObject::connect(popUp, &QComboBox::activated, popUp, [control](int index) {
            if (index != control->separator)
                control->selected.set(index);
        });
        followEnabled(popUp, *control);
        return mirror(control->selected, show);
    }

    Attached operator()(platform::TextField* control) const {
        if (auto* const field = qobject_cast<QLineEdit*>(object))
            return attachField(field, *control);
        auto* const box = dynamic_cast<SecondsBox*>(object);
        if (box == nullptr)
            return std::nullopt;
        followEnabled(box, *control);
        return mirror(control->text,
                      [box, control] { box->show(platform::leadingNumber(control->text.get())); });
    }

    Attached operator()(platform::Label* control) const {
        if (auto* const label = qobject_cast<QLabel*>(object)) {
            label->setTextFormat(Qt::PlainText);
            mirror(control->text,
                   [label, control] { label->setText(QString::fromStdString(control->text.get())); });
        } else if (auto* const reader = dynamic_cast<HelpView*>(object)) {
            mirror(control->text, [reader, control] { reader->showRichText(control->text.get()); });
        } else {
            return std::nullopt;
        }
        return ShowControl{};
    }

    Attached operator()(platform::CheckBox* control) const {
        // A push button stands for one of which nobody asks whether it is on.
        auto* const box = qobject_cast<QAbstractButton*>(object);
        if (box == nullptr)
            return std::nullopt;
        followEnabled(box, *control);
        return mirror(control->on, [box, control] { showChecked(*box, control->on.get()); });
    }

    Attached operator()(platform::Button* control) const {
        auto* const button = qobject_cast<QAbstractButton*>(object);
        if (button == nullptr)
            return std::nullopt;
        followEnabled(button, *control);
        return ShowControl{};
    }

    Attached operator()(platform::MenuItem* control) const {
        auto* const item = qobject_cast<QAction*>(object);
        if (item == nullptr || !item->isCheckable())
            return std::nullopt;
        control->enabled.changed.observe([item](bool enabled) { item->setEnabled(enabled); });
        return mirror(control->on, [item, control] { item->setChecked(control->on.get()); });
    }

private:
    static Attached ifIs(bool fits) { return fits ? Attached(ShowControl{}) : std::nullopt; }
};

} // namespace

int tagOf(const QObject& object) {
    return object.property("tag").toInt();
}

std::optional<ShowControl> attachControl(QObject* object, const app::ControlPointer& control,
                                         app::Outlets& outlets) {
    return std::visit(Attach{object, outlets}, control);
}

} // namespace glimra::desktop
