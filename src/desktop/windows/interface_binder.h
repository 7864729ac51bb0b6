#pragma once

#include "app/actions.h"
#include "app/outlets.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace glimra::desktop {

/// Ties the windows that a designer drew to the application's controls and operations, in both directions. A
/// widget's object name is its outlet, its dynamic property `action` the selector that it sends (more of them
/// in `sending_widget.h`); a number that goes with it is its property `tag`. What serves the desktop alone
/// has a `command` instead.
///
/// No control may change after the windows are gone. Main thread.
class InterfaceBinder final : public QObject {
public:
    explicit InterfaceBinder(app::AppDelegate& delegate);

    /// A control that has a widget though it is none of the named outlets; before `bind`.
    void addOutlet(const std::string& name, const app::ControlPointer& control);
    /// What a command does; before `bind`.
    void setCommand(const std::string& name, std::function<void()> perform);
    /// Binds a window and all that is in it. Widgets that stand for others must have been replaced by now.
    void bind(QWidget* window);

    /// Sends a selector as a control does, and shows on `sender` what came of it.
    void send(const app::ActionRow& row, const app::ActionArgument& argument, QObject* sender = nullptr);
    void send(std::string_view selector, const app::ActionArgument& argument = {});

    using Route = std::function<void(const app::ActionRow&, const app::ActionArgument&)>;
    /// Everything that is sent goes to `route` from now on, which performs it, with other actions before and
    /// after it, or refuses.
    void setRoute(Route route) { m_route = std::move(route); }
    /// Has the application carry out an action, whatever the route.
    void perform(const app::ActionRow& row, const app::ActionArgument& argument);
    void perform(std::string_view selector, const app::ActionArgument& argument = {});
    /// Selectors that something else than a bound widget sends; no problem then.
    void claim(std::initializer_list<std::string_view> selectors);

    /// Around everything that is performed.
    platform::Signal<const app::ActionRow&, const app::ActionArgument&> aboutToSend;
    platform::Signal<> sent;

    /// The widget of an outlet; none when no window has it.
    QObject* widgetOf(const std::string& outlet) const;

    /// Where windows and tables disagree: an outlet or selector without a widget, a widget with an unknown
    /// one or of the wrong kind, a control that does nothing. One sentence each; none in a sound program.
    std::vector<std::string> problems() const;

private:
    void bindObject(QObject* object);
    void bindOutlet(QObject* object, const app::ControlPointer& control);
    void bindAction(QObject* object, const char* property);
    void bindCommand(QObject* object);
    bool isPartOfRadioGroup(const QObject* object) const;
    void complain(const QObject* object, const std::string& what);

    app::AppDelegate& m_delegate;
    std::map<std::string, app::ControlPointer> m_outlets;
    std::map<std::string, QPointer<QObject>> m_bound;
    Route m_route;
    std::set<std::string> m_sentSelectors;
    std::map<std::string, std::function<void()>> m_commands;
    /// Puts a widget back to what its control says.
    std::map<const QObject*, std::function<void()>> m_show;
    std::vector<std::string> m_complaints;
};

} // namespace glimra::desktop
