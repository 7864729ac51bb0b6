#pragma once

#include "platform/color.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace glimra::platform {

// The windows and controls as the core knows them: plain state that tells when it changes. The desktop's
// widgets mirror it, and without a desktop it is all there is. Main thread only; observers must not outlive
// what they touch, and are told after the change.

/// Calls everyone who asked to be called.
template <class... Arguments>
class Signal {
public:
    using Observer = std::function<void(Arguments...)>;

    void observe(Observer observer) { m_observers.push_back(std::move(observer)); }
    void emit(Arguments... arguments) const {
        for (const Observer& observer : m_observers)
            observer(arguments...);
    }

private:
    std::vector<Observer> m_observers;
};

/// A value that tells when it becomes another one.
template <class Value>
class Property {
public:
    Property() = default;
    explicit Property(Value value) : m_value(std::move(value)) {}

    const Value& get() const { return m_value; }
    void set(Value value) {
        if (m_value == value)
            return;
        m_value = std::move(value);
        changed.emit(m_value);
    }

    Signal<const Value&> changed;

private:
    Value m_value{};
};

struct Control {
    Property<bool> enabled{true};
};

struct Button : Control {};

struct CheckBox : Control {
    Property<bool> on{false};
};

struct TextField : Control {
    Property<std::string> text;
};

struct Label {
    Property<std::string> text;
};

struct ColorWell : Control {
    explicit ColorWell(int wellTag) : tag(wellTag) {}

    int tag;
    Property<Color> color;
};

/// Radio buttons of which one is chosen, by its tag.
struct RadioGroup : Control {
    Property<int> selectedTag{1};
};

struct PopUp : Control {
    Property<std::vector<std::string>> titles;
    /// 0-based; may be beyond the titles, then no item is chosen.
    Property<int> selected{0};
    /// Index of an item that only parts others and cannot be chosen; -1 for none.
    int separator = -1;

    /// Title of the chosen item, empty when there is none.
    std::string selectedTitle() const;
    /// Chooses the first item with this title; without one the choice stays.
    void selectTitle(std::string_view title);
};

struct MenuItem : Control {
    explicit MenuItem(std::string itemTitle = {}) : title(std::move(itemTitle)) {}

    std::string title;
    Property<bool> on{false};
};

struct Window {
    Property<bool> visible{false};
    /// Asked to come to the front and take the keyboard.
    Signal<> broughtToFront;

    void bringToFront() {
        visible.set(true);
        broughtToFront.emit();
    }
};

/// A text that only grows, written at the selection. Positions count UTF-8 bytes.
struct TextView {
    std::string text;
    std::size_t selectionStart = 0;
    std::size_t selectionLength = 0;

    /// A replacement that took place: where, how many bytes went, and what came.
    Signal<std::size_t, std::size_t, std::string_view> replaced;

    /// Replaces the selection by `addition`; the insertion point is then behind it.
    void insertAtSelection(std::string_view addition);
};

/// A picture that the application leaves as it is.
struct Picture {};

/// A view that draws itself.
struct CanvasView {
    /// The whole of it, or one part, wants to be drawn anew.
    Signal<> displayNeeded;
};

} // namespace glimra::platform
