#include "desktop/windows/sending_widget.h"

#include "desktop/windows/attached_control.h"

#include "desktop/windows/color_well.h"
#include "desktop/windows/keyboard_canvas.h"
#include "desktop/windows/seconds_box.h"

#include <QAction>
#include <QComboBox>
#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QVariant>

#include <algorithm>

namespace glimra::desktop {

namespace {

// One function for each kind of widget and of argument.

void itemIsChosen(QAction& item, const Send& send) {
    QObject::connect(&item, &QAction::triggered, &item, [send] { send(std::monostate{}); });
}

void itemIsChecked(QAction& item, const Send& send) {
    QObject::connect(&item, &QAction::triggered, &item, [send](bool checked) { send(checked); });
}

void buttonIsClicked(QAbstractButton& button, const Send& send) {
    if (!button.isCheckable())
        QObject::connect(&button, &QAbstractButton::clicked, &button, [send] { send(std::monostate{}); });
    else
        QObject::connect(&button, &QAbstractButton::toggled, &button, [send](bool isChosen) {
            if (isChosen)
                send(std::monostate{});
        });
}

void boxIsChecked(QAbstractButton& box, const Send& send) {
    // A screen reader toggles a box without a click. What a control sets is never heard here: whoever shows
    // it blocks the signal.
    const auto signal = box.isCheckable() ? &QAbstractButton::toggled : &QAbstractButton::clicked;
    QObject::connect(&box, signal, &box, [send](bool checked) { send(checked); });
}

void buttonSendsTag(QAbstractButton& button, const Send& send) {
    QObject::connect(&button, &QAbstractButton::clicked, &button,
                     [send, &button] { send(app::ButtonTag{tagOf(button)}); });
}

void groupSendsTag(QWidget& group, const Send& send) {
    for (QAbstractButton* const choice : group.findChildren<QAbstractButton*>())
        QObject::connect(choice, &QAbstractButton::toggled, choice, [send, choice](bool isChosen) {
            if (isChosen)
                send(app::RadioTag{tagOf(*choice)});
        });
}

void popUpIsOperated(QComboBox& popUp, const Send& send) {
    QObject::connect(&popUp, &QComboBox::activated, &popUp, [send] { send(std::monostate{}); });
}

void popUpSendsIndex(QComboBox& popUp, const Send& send) {
    QObject::connect(&popUp, &QComboBox::activated, &popUp,
                     [send](int index) { send(app::ItemIndex{index}); });
}

void popUpSendsTitle(QComboBox& popUp, const Send& send) {
    QObject::connect(&popUp, &QComboBox::activated, &popUp, [send, &popUp](int index) {
        send(app::ItemTitle{popUp.itemData(index).toString().toStdString()});
    });
}

void boxSendsSeconds(SecondsBox& box, const Send& send) {
    QObject::connect(&box, &QDoubleSpinBox::valueChanged, &box, [send, &box](double value) {
        send(app::EnteredText{QString::number(value, 'f', box.decimals()).toStdString()});
    });
}

void fieldSendsText(QLineEdit& field, const Send& send) {
    QObject::connect(&field, &QLineEdit::editingFinished, &field, [send, &field] {
        if (!field.isModified())
            return;
        field.setModified(false);
        send(app::EnteredText{field.text().toStdString()});
    });
}

void canvasIsPressed(KeyboardCanvas& canvas, const Send& send) {
    canvas.pressed = [send](QPointF point) { send(app::CanvasPoint{point.x(), point.y()}); };
}

void canvasIsDragged(KeyboardCanvas& canvas, const Send& send) {
    canvas.dragged = [send](QPointF point) { send(app::CanvasPoint{point.x(), point.y()}); };
}

void wellIsOpened(ColorWell& well, const Send& send) {
    well.opened = [send] { send(std::monostate{}); };
}

void wellSendsColor(ColorWell& well, const Send& send) {
    well.picked = [send, &well](const platform::Color& color) { send(app::WellColor{tagOf(well), color}); };
}

void wellSendsOldColor(ColorWell& well, const Send& send) {
    well.restored = [send, &well](const platform::Color& color) { send(app::WellColor{tagOf(well), color}); };
}

/// A window that is to be closed asks instead.
class CloseFilter final : public QObject {
public:
    CloseFilter(QWidget& window, Send send) : QObject(&window), m_send(std::move(send)) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool isClose = event->type() == QEvent::Close;
        // A dialog would hide itself, and its control would know nothing of it; other windows would stay.
        const bool isEscape = event->type() == QEvent::KeyPress &&
                              qobject_cast<QMainWindow*>(watched) == nullptr &&
                              static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
        if (!isClose && !isEscape)
            return QObject::eventFilter(watched, event);
        if (isClose)
            event->ignore();
        m_send(app::WindowName{watched->objectName().toStdString()});
        return true;
    }

private:
    Send m_send;
};

void windowSendsName(QWidget& window, const Send& send) {
    window.installEventFilter(new CloseFilter(window, send));
}

/// How a widget sends; false when it is another kind of widget or of argument.
struct Way {
    std::string_view property;
    bool (*connect)(QObject* object, const app::ActionArgument& takes, const Send& send);
};

template <class Widget, class Argument, void (*connect)(Widget&, const Send&)>
constexpr Way way(std::string_view property) {
    return {property, [](QObject* object, const app::ActionArgument& takes, const Send& send) {
                auto* const widget = dynamic_cast<Widget*>(object);
                if (widget == nullptr || !std::holds_alternative<Argument>(takes))
                    return false;
                connect(*widget, send);
                return true;
            }};
}

constexpr std::array kWays{
    way<QAction, std::monostate, itemIsChosen>("action"),
    way<QAction, bool, itemIsChecked>("action"),
    way<QAbstractButton, std::monostate, buttonIsClicked>("action"),
    way<QAbstractButton, bool, boxIsChecked>("action"),
    way<QAbstractButton, app::ButtonTag, buttonSendsTag>("action"),
    way<QWidget, app::RadioTag, groupSendsTag>("action"),
    way<QComboBox, std::monostate, popUpIsOperated>("action"),
    way<QComboBox, app::ItemIndex, popUpSendsIndex>("action"),
    way<QComboBox, app::ItemTitle, popUpSendsTitle>("action"),
    way<SecondsBox, app::EnteredText, boxSendsSeconds>("action"),
    way<QLineEdit, app::EnteredText, fieldSendsText>("action"),
    way<KeyboardCanvas, app::CanvasPoint, canvasIsPressed>("action"),
    way<KeyboardCanvas, app::CanvasPoint, canvasIsDragged>("dragAction"),
    way<ColorWell, std::monostate, wellIsOpened>("openAction"),
    way<ColorWell, app::WellColor, wellSendsColor>("action"),
    way<ColorWell, app::WellColor, wellSendsOldColor>("restoreAction"),
    way<QWidget, app::WindowName, windowSendsName>("action"),
};

} // namespace

bool connectWidget(QObject* object, std::string_view property, const app::ActionArgument& takes,
                   const Send& send) {
    return std::ranges::any_of(kWays, [&](const Way& each) {
        return each.property == property && each.connect(object, takes, send);
    });
}

} // namespace glimra::desktop
