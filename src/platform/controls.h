#pragma once

#include "platform/color.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace glimra::platform {

// Windows and controls as the core sees them: plain values that notify observers when they change. On the
// desktop, widgets mirror them; without a desktop there is nothing else. Main thread only. Observers are
// called after the change; what they refer to must outlive the control.

/// A list of observers. `emit` calls them all, in the order in which they were added.
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

/// A value that notifies its observers when it changes.
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

/// Radio buttons, of which one is chosen; the tag says which.
struct RadioGroup : Control {
    Property<int> selectedTag{1};
};

struct PopUp : Control {
    Property<std::vector<std::string>> titles;
    /// Index of the chosen item. An index beyond the titles means that no item is chosen.
    Property<int> selected{0};
    /// Index of the separator, an item that cannot be chosen; -1 when there is none.
    int separator = -1;

    /// Title of the chosen item; empty when no item is chosen.
    std::string selectedTitle() const;
    /// Chooses the first item with this title; does nothing when there is none.
    void selectTitle(std::string_view title);
};

struct MenuItem : Control {
    explicit MenuItem(std::string itemTitle = {}) : title(std::move(itemTitle)) {}

    std::string title;
    Property<bool> on{false};
};

struct Window {
    Property<bool> visible{false};
    /// Emitted to bring the window to the front and give it the keyboard focus.
    Signal<> broughtToFront;

    void bringToFront() {
        visible.set(true);
        broughtToFront.emit();
    }
};

/// A text into which new text is inserted at the selection. Positions and lengths are in UTF-8 bytes.
struct TextView {
    std::string text;
    std::size_t selectionStart = 0;
    std::size_t selectionLength = 0;

    /// Emitted after each replacement: its position, the number of bytes removed, and the text inserted.
    Signal<std::size_t, std::size_t, std::string_view> replaced;

    /// Replaces the selection with `addition` and puts the insertion point after it.
    void insertAtSelection(std::string_view addition);
};

/// A picture that the application never changes.
struct Picture {};

/// A view that draws itself.
struct CanvasView {
    /// Emitted when the view, or part of it, must be redrawn.
    Signal<> displayNeeded;
};

} // namespace glimra::platform
