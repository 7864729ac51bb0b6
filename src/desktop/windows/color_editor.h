#pragma once

#include <QColor>
#include <QFrame>

#include <functional>

class QLabel;
class QLineEdit;
class QSlider;

namespace glimra::desktop {

class ColorWheel;

/// Where a colour is changed, within its window: on a wheel, by its hexadecimal digits, and with a name of
/// the player's own. What is chosen counts at once; Cancel or Escape takes all of it back. Hidden while no
/// colour is changed.
class ColorEditor final : public QFrame {
public:
    /// One colour that is changed.
    struct Session {
        const QObject* owner = nullptr;
        QString title;
        QString ownName;
        QColor color;
        std::function<void(const QColor&)> picked;
        std::function<void(const QString&)> named;
        std::function<void()> cancelled;
    };

    explicit ColorEditor(QWidget* parent = nullptr);
    /// The one of a window; null where there is none.
    static ColorEditor* of(const QWidget* window);

    /// The editor has opened (true) or closed.
    std::function<void(bool)> shown;

    /// What the session before has chosen stays.
    void open(const Session& session);
    /// Closes the owner's session and keeps what was chosen; does nothing when another one is open.
    void close(const QObject* owner);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void pick(const QColor& color);
    void pickFromWheel();
    void showColor(const QColor& color);
    void end();
    void finish();
    void cancel();

    Session m_session;
    ColorWheel* m_wheel;
    QSlider* m_brightness;
    QLabel* m_title;
    QLineEdit* m_hex;
    QLineEdit* m_name;
};

} // namespace glimra::desktop
