#include "desktop/windows/interface_binder.h"

#include "desktop/windows/attached_control.h"
#include "desktop/windows/sending_widget.h"

#include <algorithm>

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QVariant>

namespace glimra::desktop {

using app::ActionArgument;
using app::ActionRow;

namespace {

std::string nameOf(const QObject* object) {
    return object->objectName().toStdString();
}

std::string textProperty(const QObject* object, const char* name) {
    return object->property(name).toString().toStdString();
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

} // namespace

InterfaceBinder::InterfaceBinder(app::AppDelegate& delegate) : m_delegate(delegate) {
    for (const app::NamedOutlet& outlet : app::namedOutlets())
        addOutlet(std::string(outlet.name), outlet.in(delegate.outlets()));
}

void InterfaceBinder::addOutlet(const std::string& name, const app::ControlPointer& control) {
    m_outlets.emplace(name, control);
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

void InterfaceBinder::bindObject(QObject* object) {
    const auto outlet = m_outlets.find(nameOf(object));
    if (outlet != m_outlets.end())
        bindOutlet(object, outlet->second);
    bool sends = false;
    for (const char* const property : kActionProperties)
        if (object->property(property).isValid()) {
            bindAction(object, property);
            sends = true;
        }
    const bool hasCommand = object->property("command").isValid();
    if (hasCommand)
        bindCommand(object);
    if (!sends && !hasCommand && outlet == m_outlets.end() && isOperable(object) &&
        !isPartOfRadioGroup(object))
        complain(object, "is no outlet and does nothing");
}

void InterfaceBinder::bindOutlet(QObject* object, const app::ControlPointer& control) {
    if (!m_bound.emplace(nameOf(object), object).second)
        complain(object, "is there twice");
    const std::optional<ShowControl> show = attachControl(object, control, m_delegate.outlets());
    if (!show)
        complain(object, "is of the wrong kind for its outlet");
    else if (*show)
        m_show[object] = *show;
}

bool InterfaceBinder::isPartOfRadioGroup(const QObject* object) const {
    if (object->parent() == nullptr || tagOf(*object) == 0)
        return false;
    const auto group = m_outlets.find(nameOf(object->parent()));
    return group != m_outlets.end() && std::holds_alternative<platform::RadioGroup*>(group->second);
}

void InterfaceBinder::bindCommand(QObject* object) {
    const auto command = m_commands.find(textProperty(object, "command"));
    if (command == m_commands.end())
        return complain(object, "has an unknown command");
    // A click on it, as of an action that brings nothing.
    const auto perform = command->second;
    if (!connectWidget(object, "action", {}, [perform](const ActionArgument&) { perform(); }))
        complain(object, "is of the wrong kind for its command");
}

void InterfaceBinder::bindAction(QObject* object, const char* property) {
    const std::string selector = textProperty(object, property);
    const ActionRow* const row = app::findAction(selector);
    if (row == nullptr)
        return complain(object, "sends the unknown " + selector);
    m_sentSelectors.insert(selector);
    if (!row->outlets.empty() && std::ranges::find(row->outlets, nameOf(object)) == row->outlets.end())
        complain(object, "sends " + selector + ", which another control sends");
    const Send sendRow = [this, object, row](const ActionArgument& argument) {
        send(*row, argument, object);
    };
    if (!connectWidget(object, property, row->call.takes, sendRow))
        complain(object, "is of the wrong kind for " + selector);
}

void InterfaceBinder::claim(std::initializer_list<std::string_view> selectors) {
    m_sentSelectors.insert(selectors.begin(), selectors.end());
}

void InterfaceBinder::complain(const QObject* object, const std::string& what) {
    m_complaints.push_back(nameOf(object) + " " + what);
}

} // namespace glimra::desktop
