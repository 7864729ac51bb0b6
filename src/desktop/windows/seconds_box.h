#pragma once

#include <QDoubleSpinBox>

#include <functional>

namespace glimra::desktop {

/// Takes a number of seconds, with the machine's decimal sign; a point and a comma both stand for that sign,
/// since numbers this small need no other. Whatever else is typed stands as it was typed, and is not taken:
/// when the box is left, the number that was there comes back.
class SecondsBox final : public QDoubleSpinBox {
public:
    explicit SecondsBox(QWidget* parent = nullptr);

    /// Shows a number as it is, also one above the limit, and sends nothing.
    void show(double seconds);
    /// What a user may choose, for a label.
    QString limits() const;

    QString textFromValue(double value) const override;
    QValidator::State validate(QString& text, int& position) const override;
    void fixup(QString& text) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    /// What was typed is not taken (true), or something else is typed now (false).
    std::function<void(bool)> refused = [](bool) {};
};

} // namespace glimra::desktop
