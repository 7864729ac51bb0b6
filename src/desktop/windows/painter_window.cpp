#include "desktop/windows/painter_window.h"

#include "app/palette_check.h"
#include "desktop/windows/color_editor.h"
#include "desktop/windows/color_well.h"
#include "desktop/windows/paint_button.h"
#include "desktop/windows/seconds_box.h"

#include <QShortcut>

namespace glimra::desktop {

PainterWindow::PainterWindow(QWidget* window, const Parts& parts)
    : m_window(window),
      m_parts(parts),
      m_canvas(dynamic_cast<KeyboardCanvas*>(window->findChild<QWidget*>("keyboardCanvas"))),
      m_names(window, parts.delegate, parts.userDefaults),
      m_tools(window, *m_canvas, parts.binder, parts.delegate.state().canvas),
      m_editedProfile(window, parts.delegate, parts.runLoop) {
    m_canvas->setSource(
        {.draw =
             [this](const auto& showKey) { m_parts.delegate.operations().colorPainter.drawKeys(showKey); },
         .colorName = [this](lighting::KeyCode code) { return colorNameOfKey(code); }});
    m_parts.delegate.outlets().keyboardCanvas.displayNeeded.observe([this] { askForCanvas(); });
    connectParts();
}

void PainterWindow::connectParts() {
    auto* const blinkTime = dynamic_cast<SecondsBox*>(m_window->findChild<QWidget*>("blinkTimeTextbox"));
    auto* const limits = m_window->findChild<QLabel*>("secondsLabel");
    blinkTime->refused = [limits, range = blinkTime->limits()](bool refused) {
        limits->setText(QString(refused ? "⚠ Only %1 seconds" : "seconds (%1)").arg(range));
    };
    // Nothing moves when the words change.
    blinkTime->refused(true);
    limits->setMinimumWidth(limits->sizeHint().width());
    blinkTime->refused(false);

    for (QAbstractButton* const button : m_window->findChildren<QAbstractButton*>())
        if (auto* const swatch = dynamic_cast<PaintButton*>(button))
            swatch->setWell(m_window->findChild<QAbstractButton*>("color" + swatch->text()));
    // The options make room for the editor, so that it needs none of its own on a small screen.
    ColorEditor::of(m_window)->shown = [this](bool isShown) {
        m_window->findChild<QWidget*>("optionCards")->setVisible(!isShown);
    };
    // Next to the button's own.
    auto* const redo = m_window->findChild<QAbstractButton*>("redoButton");
    QObject::connect(new QShortcut(QKeySequence("Ctrl+Y"), m_window), &QShortcut::activated, redo,
                     [redo] { redo->click(); });
}

void PainterWindow::takeOver() {
    m_tools.takeOver();
    m_names.show();
    showState();
}

void PainterWindow::askForCanvas() {
    const platform::Window& window = m_parts.delegate.outlets().colorProgrammerWindow;
    if (m_canvasIsAsked || !window.visible.get())
        return;
    // However often it is asked for within one operation, one drawing shows all of it.
    m_canvasIsAsked = true;
    m_parts.runLoop.post([this, &window] {
        m_canvasIsAsked = false;
        if (!window.visible.get())
            return;
        m_canvas->redraw();
        m_editedProfile.show();
        m_names.show();
        showState();
    });
}

void PainterWindow::showState() {
    const app::State& state = m_parts.delegate.state();
    const app::Outlets& outlets = m_parts.delegate.outlets();
    app::Operations& operations = m_parts.delegate.operations();
    const auto enable = [this](const char* name, bool isEnabled) {
        m_window->findChild<QWidget*>(name)->setEnabled(isEnabled);
    };
    enable("undoButton", operations.canvasEdits.canUndo());
    enable("redoButton", operations.canvasEdits.canRedo());
    enable("cooldownPreviewBtn",
           outlets.cooldownPreviewBtn.enabled.get() && operations.colorProgrammer.canvasShowsCooldowns());
    enable("controlAllLightsCheckbox",
           outlets.controlAllLightsCheckbox.enabled.get() && !state.options.useSingleColorMode);
    showPaletteWarning();
}

void PainterWindow::showPaletteWarning() {
    const app::State& state = m_parts.delegate.state();
    QStringList sentences;
    if (m_parts.delegate.operations().colorProgrammer.canvasShowsCooldowns())
        for (const app::PaletteWarning& warning :
             app::checkPalette(state.canvas.keyColorSet, state.canvas.keysToColors, state.actionKeys)) {
            const std::string_view whom = app::describe(warning.vision);
            sentences.append(
                warning.slot == lighting::kCooldownSlot
                    ? QString("Some action keys have the cooldown color themselves.")
                    : QString("The cooldown color is hard to tell from %1 %2.")
                          .arg(m_names.nameOfSlot(warning.slot),
                               QString::fromUtf8(whom.data(), static_cast<qsizetype>(whom.size()))));
        }
    auto* const label = m_window->findChild<QLabel*>("paletteWarning");
    label->setText(sentences.isEmpty() ? QString() : "⚠ " + sentences.join(' '));
    label->setVisible(!sentences.isEmpty());
}

QString PainterWindow::colorNameOfKey(lighting::KeyCode code) const {
    const lighting::KeyMap& map = m_parts.delegate.state().canvas.keysToColors;
    return code < map.size() ? m_names.nameOfSlot(map[code]) : QString();
}

} // namespace glimra::desktop
