#include "desktop/windows/color_editor.h"

#include "desktop/windows/color_name.h"
#include "desktop/windows/color_wheel.h"
#include "desktop/windows/qt_colors.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>

#include <utility>

namespace glimra::desktop {

namespace {

constexpr int kMostBrightness = 255;
constexpr int kLongestName = 24;

QLabel* labelFor(QWidget* field, const QString& text) {
    auto* const label = new QLabel(text);
    label->setBuddy(field);
    field->setAccessibleName(QString(text).remove('&'));
    return label;
}

} // namespace

ColorEditor::ColorEditor(QWidget* parent)
    : QFrame(parent),
      m_wheel(new ColorWheel),
      m_brightness(new QSlider(Qt::Horizontal)),
      m_title(new QLabel),
      m_hex(new QLineEdit),
      m_name(new QLineEdit) {
    m_brightness->setRange(0, kMostBrightness);
    m_name->setMaxLength(kLongestName);
    m_name->setPlaceholderText("Your own name for it");
    auto* const done = new QPushButton("Done");
    auto* const back = new QPushButton("Cancel");
    back->setAccessibleName("Cancel this color");
    auto* const grid = new QGridLayout(this);
    grid->addWidget(m_wheel, 0, 0, 5, 1);
    grid->addWidget(m_title, 0, 1, 1, 2);
    const std::initializer_list<std::pair<QWidget*, QString>> rows{
        {m_brightness, "Brightness"}, {m_hex, "He&x"}, {m_name, "&Name"}};
    int row = 1;
    for (const auto& [field, text] : rows) {
        grid->addWidget(labelFor(field, text), row, 1);
        grid->addWidget(field, row++, 2);
    }
    auto* const answers = new QHBoxLayout;
    answers->addStretch();
    answers->addWidget(back);
    answers->addWidget(done);
    grid->addLayout(answers, row, 1, 1, 2);
    grid->setColumnStretch(2, 1);
    grid->setHorizontalSpacing(12);

    m_wheel->chosen = [this](const ColorWheel::Choice&) { pickFromWheel(); };
    connect(m_brightness, &QSlider::valueChanged, this, [this] { pickFromWheel(); });
    connect(m_hex, &QLineEdit::textEdited, this, [this](const QString& text) {
        const QString digits = text.startsWith('#') ? text : '#' + text;
        if (const QColor color(digits); color.isValid() && digits.size() == 7)
            pick(color);
    });
    for (QLineEdit* const field : {m_hex, m_name})
        connect(field, &QLineEdit::returnPressed, this, [this] { finish(); });
    connect(done, &QPushButton::clicked, this, [this] { finish(); });
    connect(back, &QPushButton::clicked, this, [this] { cancel(); });
    hide();
}

ColorEditor* ColorEditor::of(const QWidget* window) {
    return dynamic_cast<ColorEditor*>(window->findChild<QFrame*>("colorEditor"));
}

void ColorEditor::open(const Session& session) {
    end();
    m_session = session;
    m_name->setText(session.ownName);
    m_hex->clear();
    showColor(session.color);
    show();
    if (shown)
        shown(true);
    m_hex->setFocus();
    m_hex->selectAll();
}

void ColorEditor::close(const QObject* owner) {
    if (owner == m_session.owner)
        end();
}

void ColorEditor::pick(const QColor& color) {
    showColor(color);
    if (m_session.picked)
        m_session.picked(color);
}

void ColorEditor::pickFromWheel() {
    const auto [hue, saturation] = m_wheel->choice();
    const float brightness = static_cast<float>(m_brightness->value()) / kMostBrightness;
    const QColor color = QColor::fromHsvF(hue, saturation, brightness);
    m_hex->setText(color.name());
    m_wheel->setBrightness(brightness);
    m_title->setText(m_session.title + " – " + colorName(fromQColor(color)));
    if (m_session.picked)
        m_session.picked(QColor::fromRgb(color.rgb()));
}

void ColorEditor::showColor(const QColor& color) {
    float hue = 0;
    float saturation = 0;
    float brightness = 0;
    color.getHsvF(&hue, &saturation, &brightness);
    m_wheel->setChoice({hue < 0 ? m_wheel->choice().hue : hue, saturation});
    m_wheel->setBrightness(brightness);
    const QSignalBlocker quietly(m_brightness);
    m_brightness->setValue(qRound(brightness * kMostBrightness));
    if (QColor('#' + m_hex->text().remove('#')) != color)
        m_hex->setText(color.name());
    m_title->setText(m_session.title + " – " + colorName(fromQColor(color)));
}

void ColorEditor::end() {
    if (m_session.owner == nullptr)
        return;
    const Session ended = std::exchange(m_session, {});
    if (ended.named && m_name->text() != ended.ownName)
        ended.named(m_name->text());
    hide();
    if (shown)
        shown(false);
}

void ColorEditor::finish() {
    const auto* const owner = qobject_cast<const QWidget*>(m_session.owner);
    end();
    if (owner != nullptr)
        const_cast<QWidget*>(owner)->setFocus();
}

void ColorEditor::cancel() {
    m_name->setText(m_session.ownName);
    const auto cancelled = m_session.cancelled;
    finish();
    if (cancelled)
        cancelled();
}

void ColorEditor::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        cancel();
    else
        QFrame::keyPressEvent(event);
}

} // namespace glimra::desktop
