#pragma once

#include "keyboards/openrgb/hand_placing.h"
#include "platform/user_defaults.h"

#include <QDialog>
#include <QLabel>
#include <QListWidget>

#include <functional>

namespace glimra::desktop {

/// Where a player tells behind which key each light of an OpenRGB keyboard is: a light is chosen, it alone
/// shines, and its key is pressed. Main thread.
class PlaceLightsWindow final : public QDialog {
public:
    struct Parts {
        keyboards::openrgb::HandPlacing& placing;
        platform::UserDefaults& userDefaults;
        /// Has the keyboard show all its colors anew.
        std::function<void()> resend;
    };

    PlaceLightsWindow(QWidget* parent, const Parts& parts);

    /// Shows the lights of the keyboard that is lit now, which there must be.
    void open() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void done(int result) override;

private:
    void list();
    void choose(int light);
    void place(std::optional<std::size_t> key);
    void light(std::optional<std::size_t> only);

    Parts m_parts;
    keyboards::openrgb::HandPlacing::Board m_board;
    QLabel* m_hint;
    QListWidget* m_lights;
    /// The light that shines until its key is pressed.
    std::optional<std::size_t> m_chosen;
};

} // namespace glimra::desktop
