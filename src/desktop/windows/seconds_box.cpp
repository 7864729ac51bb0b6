#include "desktop/windows/seconds_box.h"

#include <QLineEdit>
#include <QSignalBlocker>

#include <algorithm>

namespace glimra::desktop {

namespace {

constexpr double kLeast = 0.01;
constexpr double kMost = 5.0;

} // namespace

SecondsBox::SecondsBox(QWidget* parent) : QDoubleSpinBox(parent) {
    // Milliseconds are all that an effect's duration has.
    setDecimals(3);
    setRange(kLeast, kMost);
    setSingleStep(0.1);
    // Nothing is sent while a number is half typed.
    setKeyboardTracking(false);
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] { refused(false); });
}

void SecondsBox::show(double seconds) {
    const QSignalBlocker blocker(this);
    setMaximum(std::max(kMost, seconds));
    setValue(seconds);
}

QString SecondsBox::limits() const {
    return QString("%1 to %2").arg(textFromValue(kLeast), textFromValue(kMost));
}

QString SecondsBox::textFromValue(double value) const {
    QLocale plain = locale();
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    return plain.toString(value, 'f', QLocale::FloatingPointShortest);
}

QValidator::State SecondsBox::validate(QString& text, int& position) const {
    const QString sign = locale().decimalPoint();
    text.replace('.', sign).replace(',', sign);
    // Were a character refused while it is typed, what is left might be another number: 1 of 15.
    return std::max(QDoubleSpinBox::validate(text, position), QValidator::Intermediate);
}

QSize SecondsBox::sizeHint() const {
    // The limits are shorter than what may be between them.
    return QDoubleSpinBox::sizeHint() + QSize(fontMetrics().horizontalAdvance("00"), 0);
}

void SecondsBox::fixup(QString&) const {
    refused(true);
}

} // namespace glimra::desktop
