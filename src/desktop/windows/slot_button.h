#pragma once

#include <QAbstractButton>

#include <algorithm>

namespace glimra::desktop {

/// A slot of an action bar: its number, and the key that it is bound to. One of all slots is chosen.
class SlotButton final : public QAbstractButton {
public:
    explicit SlotButton(QWidget* parent = nullptr);

    /// `tint` is the colour of the slot's bar in the picture; `isShared` when another slot has the key too.
    void showKey(const QString& key, const QColor& tint, bool isShared);
    /// The next key that is pressed will be the slot's.
    void setWaiting(bool isWaiting);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_key;
    QColor m_tint;
    bool m_isShared = false;
    bool m_isWaiting = false;
};

} // namespace glimra::desktop
