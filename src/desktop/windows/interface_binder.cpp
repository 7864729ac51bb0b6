#include "desktop/windows/interface_binder.h"

#include "desktop/windows/color_well.h"
#include "desktop/windows/help_view.h"
#include "desktop/windows/keyboard_canvas.h"
#include "desktop/windows/keyboard_view.h"
#include "desktop/windows/paint_button.h"
#include "desktop/windows/qt_colors.h"
#include "desktop/windows/seconds_box.h"
#include "platform/decimal_text.h"

#include <algorithm>

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QVariant>

namespace glimra::desktop {

using app::ActionArgument;
using app::ActionRow;
using app::ArgumentKind;

namespace {

// What a colour well sends besides the colour that was chosen.
constexpr std::string_view kEndEdit = "endEdit:";
constexpr std::string_view kWellRestored = "colorWellRestored:";

std::string nameOf(const QObject* object) {
    return object->objectName().toStdString();
}

std::string textProperty(const QObject* object, const char* name) {
    return object->property(name).toString().toStdString();
}

int tagOf(const QObject* object) {
    return object->property("tag").toInt();
}

/// Things that a user can operate, as opposed to those that only show or hold something.
bool isOperable(const QObject* object) {
    if (const auto* action = qobject_cast<const QAction*>(object))
        return !action->isSeparator() && action->menu() == nullptr;
    return qobject_cast<const QAbstractButton*>(object) != nullptr ||
           qobject_cast<const QComboBox*>(object) != nullptr ||
           qobject_cast<const QLineEdit*>(object) != nullptr ||
           qobject_cast<const QAbstractSpinBox*>(object) != nullptr;
}

/// Qt's own parts of a widget have no name, or one that says whose they are.
bool isDesigned(const QObject* object) {
    return !object->objectName().isEmpty() && !object->objectName().startsWith("qt_");
}

ActionArgument withNumber(int number) {
    ActionArgument argument;
    argument.number = number;
    return argument;
}

} // namespace

InterfaceBinder::InterfaceBinder(app::AppDelegate& delegate) : m_delegate(delegate) {
    for (app::NamedOutlet& outlet : app::namedOutlets(delegate.outlets()))
        m_outlets.emplace(outlet.name, outlet);
}

void InterfaceBinder::setCommand(const std::string& name, std::function<void()> perform) {
    m_commands[name] = std::move(perform);
}

void InterfaceBinder::bind(QWidget* window) {
    // Binding gives a widget its content, and with that it may replace parts of its own that are listed here.
    std::vector<QPointer<QObject>> objects{window};
    for (QObject* const child : window->findChildren<QObject*>())
        objects.emplace_back(child);
    for (const QPointer<QObject>& object : objects)
        if (object && isDesigned(object))
            bindObject(object);
}

void InterfaceBinder::send(const ActionRow& row, const ActionArgument& argument, QObject* sender) {
    if (m_route)
        m_route(row, argument);
    else
        perform(row, argument);
    if (const auto show = m_show.find(sender); show != m_show.end())
        show->second();
}

void InterfaceBinder::send(std::string_view selector, const ActionArgument& argument) {
    if (const ActionRow* const row = app::findAction(selector))
        send(*row, argument);
}

void InterfaceBinder::perform(const ActionRow& row, const ActionArgument& argument) {
    aboutToSend.emit(row, argument);
    app::sendAction(m_delegate, row, argument);
    sent.emit();
}

void InterfaceBinder::perform(std::string_view selector, const ActionArgument& argument) {
    if (const ActionRow* const row = app::findAction(selector))
        perform(*row, argument);
}

QObject* InterfaceBinder::widgetOf(const std::string& outlet) const {
    const auto found = m_bound.find(outlet);
    return found == m_bound.end() ? nullptr : found->second.data();
}

std::vector<std::string> InterfaceBinder::problems() const {
    std::vector<std::string> all = m_complaints;
    for (const auto& [name, outlet] : m_outlets)
        if (!m_bound.contains(name))
            all.push_back("no widget for the outlet " + name);
    for (const ActionRow& row : app::actionTable())
        if (!m_sentSelectors.contains(row.selector))
            all.push_back("no widget sends " + row.selector);
    return all;
}

bool InterfaceBinder::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Close) {
        event->ignore();
        sendClose(watched);
        return true;
    }
    // A dialog would hide itself, and its control would know nothing of it.
    if (event->type() == QEvent::KeyPress && qobject_cast<QDialog*>(watched) != nullptr &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        sendClose(watched);
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void InterfaceBinder::bindObject(QObject* object) {
    const auto outlet = m_outlets.find(nameOf(object));
    if (outlet != m_outlets.end())
        bindOutlet(object, outlet->second);
    const QVariant action = object->property("action");
    const QVariant command = object->property("command");
    for (const char* property : {"action", "dragAction"}) {
        const std::string selector = textProperty(object, property);
        if (selector.empty())
            continue;
        if (const ActionRow* const row = app::findAction(selector))
            bindAction(object, *row);
        else
            complain(object, "sends the unknown " + selector);
    }
    if (command.isValid())
        bindCommand(object);
    if (!action.isValid() && !command.isValid() && outlet == m_outlets.end() && isOperable(object) &&
        !isPartOfRadioGroup(object))
        complain(object, "is no outlet and does nothing");
}

void InterfaceBinder::bindOutlet(QObject* object, const app::NamedOutlet& outlet) {
    if (!m_bound.emplace(outlet.name, object).second)
        complain(object, "is there twice");
    const bool fits = std::visit(
        [&](auto* control) {
            if constexpr (std::is_same_v<decltype(control), platform::Window*>) {
                auto* const widget = qobject_cast<QWidget*>(object);
                return widget != nullptr && attach(widget, *control);
            } else {
                return attach(object, *control);
            }
        },
        outlet.control);
    if (!fits)
        complain(object, "is of the wrong kind for its outlet");
}

bool InterfaceBinder::isPartOfRadioGroup(const QObject* object) const {
    return object->parent() != nullptr && nameOf(object->parent()) == "colorButtonGroup" &&
           tagOf(object) != 0;
}

void InterfaceBinder::bindCommand(QObject* object) {
    const auto command = m_commands.find(textProperty(object, "command"));
    if (command == m_commands.end())
        return complain(object, "has an unknown command");
    const auto perform = command->second;
    if (auto* const button = qobject_cast<QAbstractButton*>(object))
        connect(button, &QAbstractButton::clicked, this, perform);
    else if (auto* const item = qobject_cast<QAction*>(object))
        connect(item, &QAction::triggered, this, perform);
    else
        complain(object, "is of the wrong kind for its command");
}

void InterfaceBinder::bindAction(QObject* object, const ActionRow& row) {
    m_sentSelectors.insert(row.selector);
    if (!row.outlets.empty() && std::ranges::find(row.outlets, nameOf(object)) == row.outlets.end())
        complain(object, "sends " + row.selector + ", which another control sends");
    const auto sendWith = [this, object, &row](ActionArgument argument) { send(row, argument, object); };
    const bool isPlain = row.kind == ArgumentKind::None || row.kind == ArgumentKind::ButtonTag;

    if (auto* const item = qobject_cast<QAction*>(object);
        item != nullptr && (isPlain || row.kind == ArgumentKind::State)) {
        if (row.selector == "debugMenuItem:")
            attach(item, m_delegate.outlets().debugMenuItem);
        connect(item, &QAction::triggered, this, [sendWith](bool checked) {
            ActionArgument argument;
            argument.state = checked;
            sendWith(argument);
        });
    } else if (auto* const well = dynamic_cast<ColorWell*>(object);
               well != nullptr && row.kind == ArgumentKind::Well) {
        bindWell(*well, row);
    } else if (auto* const button = qobject_cast<QAbstractButton*>(object);
               button != nullptr && (isPlain || row.kind == ArgumentKind::State)) {
        connect(button, &QAbstractButton::clicked, this, [sendWith, button](bool checked) {
            ActionArgument argument = withNumber(tagOf(button));
            argument.state = checked;
            sendWith(argument);
        });
    } else if (auto* const popUp = qobject_cast<QComboBox*>(object);
               popUp != nullptr && m_bound.contains(nameOf(object))) {
        connect(popUp, &QComboBox::activated, this, [this, sendWith, popUp](int index) {
            auto* const control = std::get<platform::PopUp*>(m_outlets.at(nameOf(popUp)).control);
            const std::vector<std::string>& titles = control->titles.get();
            ActionArgument argument = withNumber(index);
            if (static_cast<std::size_t>(index) < titles.size())
                argument.text = titles[static_cast<std::size_t>(index)];
            sendWith(argument);
        });
    } else if (auto* const box = dynamic_cast<SecondsBox*>(object);
               box != nullptr && row.kind == ArgumentKind::Text) {
        connect(box, &QDoubleSpinBox::valueChanged, this, [sendWith, box](double value) {
            ActionArgument argument;
            argument.text = QString::number(value, 'f', box->decimals()).toStdString();
            sendWith(argument);
        });
    } else if (auto* const field = qobject_cast<QLineEdit*>(object);
               field != nullptr && row.kind == ArgumentKind::Text) {
        connect(field, &QLineEdit::editingFinished, this, [sendWith, field] {
            if (!field->isModified())
                return;
            field->setModified(false);
            ActionArgument argument;
            argument.text = field->text().toStdString();
            sendWith(argument);
        });
    } else if (auto* const canvas = dynamic_cast<KeyboardCanvas*>(object);
               canvas != nullptr && row.kind == ArgumentKind::Point) {
        auto& handler = row.selector == "mouseDown:" ? canvas->pressed : canvas->dragged;
        handler = [sendWith](QPointF point) {
            ActionArgument argument;
            argument.x = point.x();
            argument.y = point.y();
            sendWith(argument);
        };
    } else if (auto* const widget = qobject_cast<QWidget*>(object); widget != nullptr &&
                                                                    row.kind == ArgumentKind::WindowName &&
                                                                    m_bound.contains(nameOf(object))) {
        widget->installEventFilter(this);
    } else if (widget != nullptr && row.kind == ArgumentKind::RadioTag) {
        for (QAbstractButton* const choice : widget->findChildren<QAbstractButton*>())
            connect(choice, &QAbstractButton::clicked, this,
                    [sendWith, choice] { sendWith(withNumber(tagOf(choice))); });
    } else {
        complain(object, "is of the wrong kind for " + row.selector);
    }
}

bool InterfaceBinder::attach(QWidget* widget, platform::Window& control) {
    widget->setVisible(false);
    control.visible.changed.observe([widget](bool visible) { widget->setVisible(visible); });
    control.broughtToFront.observe([widget] {
        widget->setWindowState(widget->windowState() & ~Qt::WindowMinimized);
        widget->raise();
        widget->activateWindow();
    });
    return widget->isWindow();
}

bool InterfaceBinder::attach(QObject* object, platform::TextView&) {
    return object->inherits("QPlainTextEdit");
}

bool InterfaceBinder::attach(QObject* object, platform::Picture&) {
    return dynamic_cast<KeyboardView*>(object) != nullptr;
}

bool InterfaceBinder::attach(QObject* object, platform::CanvasView&) {
    return dynamic_cast<KeyboardCanvas*>(object) != nullptr;
}

bool InterfaceBinder::attach(QObject* object, platform::RadioGroup& control) {
    auto* const group = qobject_cast<QWidget*>(object);
    if (group == nullptr)
        return false;
    std::vector<PaintButton*> choices;
    for (QAbstractButton* const button : group->findChildren<QAbstractButton*>())
        if (auto* const choice = dynamic_cast<PaintButton*>(button))
            choices.push_back(choice);
    const auto show = [choices, &control] {
        for (PaintButton* const choice : choices)
            choice->setChecked(tagOf(choice) == control.selectedTag.get());
    };
    m_show[object] = show;
    control.selectedTag.changed.observe([show](int) { show(); });
    show();
    follow(group, control);
    // Every button shows the colour of the well with its tag.
    for (PaintButton* const choice : choices)
        for (const auto& [name, outlet] : m_outlets) {
            auto* const* well = std::get_if<platform::ColorWell*>(&outlet.control);
            if (well == nullptr || (*well)->tag != tagOf(choice))
                continue;
            choice->setColor(toQColor((*well)->color.get()));
            (*well)->color.changed.observe(
                [choice](const platform::Color& color) { choice->setColor(toQColor(color)); });
        }
    return !choices.empty();
}

bool InterfaceBinder::attach(QObject* object, platform::ColorWell& control) {
    auto* const well = dynamic_cast<ColorWell*>(object);
    if (well == nullptr || tagOf(well) != control.tag)
        return false;
    const auto show = [well, &control] { well->setColor(control.color.get()); };
    control.color.changed.observe([show](const platform::Color&) { show(); });
    show();
    follow(well, control);
    return true;
}

bool InterfaceBinder::attach(QObject* object, platform::PopUp& control) {
    auto* const popUp = qobject_cast<QComboBox*>(object);
    if (popUp == nullptr)
        return false;
    if (control.separator >= 0)
        popUp->insertSeparator(control.separator);
    const auto show = [popUp, &control] { popUp->setCurrentIndex(control.selected.get()); };
    const auto fill = [popUp, show](const std::vector<std::string>& titles) {
        popUp->clear();
        for (const std::string& title : titles)
            popUp->addItem(QString::fromStdString(title).trimmed());
        show();
    };
    m_show[object] = show;
    control.selected.changed.observe([show](int) { show(); });
    control.titles.changed.observe(fill);
    if (!control.titles.get().empty())
        fill(control.titles.get());
    show();
    connect(popUp, &QComboBox::activated, this, [&control](int index) {
        if (index != control.separator)
            control.selected.set(index);
    });
    follow(popUp, control);
    return true;
}

bool InterfaceBinder::attach(QObject* object, platform::TextField& control) {
    if (auto* const box = dynamic_cast<SecondsBox*>(object)) {
        const auto showNumber = [box, &control] { box->show(platform::leadingNumber(control.text.get())); };
        m_show[object] = showNumber;
        control.text.changed.observe([showNumber](const std::string&) { showNumber(); });
        showNumber();
        follow(box, control);
        return true;
    }
    auto* const field = qobject_cast<QLineEdit*>(object);
    if (field == nullptr)
        return false;
    const auto show = [field, &control] {
        const QString text = QString::fromStdString(control.text.get());
        if (field->text() != text)
            field->setText(text);
    };
    m_show[object] = show;
    control.text.changed.observe([show](const std::string&) { show(); });
    show();
    connect(field, &QLineEdit::textEdited, this,
            [&control](const QString& text) { control.text.set(text.toStdString()); });
    follow(field, control);
    return true;
}

bool InterfaceBinder::attach(QObject* object, platform::Label& control) {
    auto* const label = qobject_cast<QLabel*>(object);
    auto* const reader = dynamic_cast<HelpView*>(object);
    if (label == nullptr && reader == nullptr)
        return false;
    const auto show = [label, reader](const std::string& text) {
        if (reader != nullptr)
            reader->showRichText(text);
        else
            label->setText(QString::fromStdString(text));
    };
    if (label != nullptr)
        label->setTextFormat(Qt::PlainText);
    control.text.changed.observe(show);
    show(control.text.get());
    return true;
}

bool InterfaceBinder::attach(QObject* object, platform::CheckBox& control) {
    // A push button stands for one of which nobody asks whether it is on.
    auto* const box = qobject_cast<QAbstractButton*>(object);
    if (box == nullptr)
        return false;
    const auto show = [box, &control] { box->setChecked(control.on.get()); };
    m_show[object] = show;
    control.on.changed.observe([show](bool) { show(); });
    show();
    follow(box, control);
    return true;
}

bool InterfaceBinder::attach(QObject* object, platform::Button& control) {
    auto* const button = qobject_cast<QAbstractButton*>(object);
    if (button != nullptr)
        follow(button, control);
    return button != nullptr;
}

bool InterfaceBinder::attach(QObject* object, platform::MenuItem& control) {
    auto* const item = qobject_cast<QAction*>(object);
    if (item == nullptr)
        return false;
    const auto show = [item, &control] { item->setChecked(control.on.get()); };
    m_show[object] = show;
    control.on.changed.observe([show](bool) { show(); });
    control.enabled.changed.observe([item](bool enabled) { item->setEnabled(enabled); });
    show();
    return item->isCheckable();
}

void InterfaceBinder::bindWell(ColorWell& well, const ActionRow& row) {
    const auto sender = [this, &well](const ActionRow& action) {
        return [this, &well, &action](const platform::Color& color) {
            ActionArgument argument = withNumber(tagOf(&well));
            argument.color = color;
            send(action, argument, &well);
        };
    };
    well.opened = [this] { send(kEndEdit); };
    well.picked = sender(row);
    well.restored = sender(*app::findAction(kWellRestored));
    claim({kEndEdit, kWellRestored});
}

void InterfaceBinder::claim(std::initializer_list<std::string_view> selectors) {
    m_sentSelectors.insert(selectors.begin(), selectors.end());
}

void InterfaceBinder::follow(QWidget* widget, platform::Control& control) {
    // What was drawn as disabled is so for good reason.
    if (widget->testAttribute(Qt::WA_ForceDisabled))
        control.enabled.set(false);
    widget->setEnabled(control.enabled.get());
    control.enabled.changed.observe([widget](bool enabled) { widget->setEnabled(enabled); });
}

void InterfaceBinder::sendClose(QObject* window) {
    ActionArgument argument;
    argument.text = nameOf(window);
    send("windowShouldClose:", argument);
}

void InterfaceBinder::complain(const QObject* object, const std::string& what) {
    m_complaints.push_back(nameOf(object) + " " + what);
}

} // namespace glimra::desktop
