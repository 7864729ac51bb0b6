#include "desktop/windows/place_lights_window.h"

#include "desktop/settings/light_places.h"
#include "desktop/windows/key_name.h"
#include "desktop/windows/physical_key.h"
#include "desktop/windows/window_fitter.h"
#include "keyboards/model/keyboard_model.h"
#include "keyboards/openrgb/keyboard_choice.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace glimra::desktop {

using keyboards::openrgb::HandPlacing;
using keyboards::openrgb::LedOfKey;

namespace {

QString nameOfKey(std::size_t key) {
    return key == keyboards::kWholeBoard ? QString("all keys")
                                         : plainKeyName(lighting::kKeyboardLayout[key].code);
}

const LedOfKey* placeOf(const HandPlacing::Places& places, std::size_t led) {
    const auto found = std::ranges::find(places, led, &LedOfKey::led);
    return found == places.end() ? nullptr : &*found;
}

} // namespace

PlaceLightsWindow::PlaceLightsWindow(QWidget* parent, const Parts& parts)
    : QDialog(parent),
      m_parts(parts),
      m_hint(new QLabel(this)),
      m_lights(new QListWidget(this)) {
    setObjectName("placeLightsWindow");
    setWindowTitle("Place Lights by Hand");
    resize(520, 560);
    m_hint->setTextFormat(Qt::PlainText);
    m_hint->setWordWrap(true);
    m_lights->setObjectName("placedLights");
    m_lights->setAccessibleName("Lights of the keyboard");
    m_lights->installEventFilter(this);
    connect(m_lights, &QListWidget::itemActivated, this, [this] { choose(m_lights->currentRow()); });
    connect(m_lights, &QListWidget::itemClicked, this, [this] { choose(m_lights->currentRow()); });
    auto* const asFound = new QPushButton("As &Found", this);
    asFound->setObjectName("lightAsFound");
    connect(asFound, &QPushButton::clicked, this, [this] {
        if (m_lights->currentRow() >= 0) {
            m_chosen = static_cast<std::size_t>(m_lights->currentRow());
            place(std::nullopt);
        }
    });
    auto* const close = new QPushButton("Close", this);
    close->setObjectName("placeLightsClose");
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    // Enter chooses a light.
    for (QPushButton* const button : {asFound, close})
        button->setAutoDefault(false);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 16);
    column->setSpacing(12);
    column->addWidget(m_hint);
    column->addWidget(m_lights, 1);
    auto* const answers = new QHBoxLayout;
    answers->addWidget(asFound);
    answers->addStretch(1);
    answers->addWidget(close);
    column->addLayout(answers);
    new WindowFitter(this, WindowFitter::Growth::Free);
}

void PlaceLightsWindow::open() {
    m_board = m_parts.placing.board().value_or(HandPlacing::Board{});
    list();
    show();
    raise();
    activateWindow();
    m_lights->setFocus();
}

void PlaceLightsWindow::list() {
    const int row = std::max(0, m_lights->currentRow());
    const HandPlacing::Places told = m_parts.placing.placesOf(m_board.id);
    m_lights->clear();
    for (std::size_t led = 0; led < m_board.leds.size(); ++led) {
        const LedOfKey* const byHand = placeOf(told, led);
        const LedOfKey* const found = placeOf(m_board.places, led);
        m_lights->addItem(QString::fromStdString(keyboards::openrgb::printable(m_board.leds[led])) + "  –  " +
                          (byHand != nullptr  ? nameOfKey(byHand->key) + ", by hand"
                           : found != nullptr ? nameOfKey(found->key)
                                              : QString("no key")));
    }
    m_lights->setCurrentRow(row);
    m_hint->setText(QString("Lights of %1. Choose one, by a click or with Enter: it alone shines, in white. "
                            "Then press the key that it is behind.")
                        .arg(QString::fromStdString(m_board.name)));
}

void PlaceLightsWindow::choose(int light) {
    // Another keyboard may have come in place of the one that is listed.
    if (const auto now = m_parts.placing.board(); !now || now->id != m_board.id)
        return reject();
    m_chosen = static_cast<std::size_t>(light);
    m_hint->setText("Press the key that shines white. A click on another light leaves this one as it is.");
    this->light(m_chosen);
}

bool PlaceLightsWindow::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (!isKey || !m_chosen)
        return QDialog::eventFilter(watched, event);
    // Any key may be the one that is meant, also one that does something else otherwise.
    event->accept();
    if (event->type() == QEvent::KeyPress)
        if (const auto code = physicalKey(*static_cast<QKeyEvent*>(event)))
            if (const auto key = keyboards::keyIndex(lighting::driverKeyName(*code)))
                place(key);
    return true;
}

void PlaceLightsWindow::place(std::optional<std::size_t> key) {
    HandPlacing::Places places = m_parts.placing.placesOf(m_board.id);
    std::erase_if(places, [this](const LedOfKey& light) { return light.led == m_chosen; });
    if (key)
        places.push_back({*m_chosen, *key});
    m_parts.placing.place(m_board.id, places);
    storeLightPlaces(m_parts.userDefaults, m_board.id, places);
    m_chosen.reset();
    light(std::nullopt);
    list();
}

void PlaceLightsWindow::light(std::optional<std::size_t> only) {
    m_parts.placing.lightOnly(only);
    m_parts.resend();
}

void PlaceLightsWindow::done(int result) {
    if (std::exchange(m_chosen, std::nullopt))
        light(std::nullopt);
    QDialog::done(result);
}

} // namespace glimra::desktop
