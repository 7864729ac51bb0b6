#pragma once

#include "app/app_delegate.h"
#include "platform/run_loop.h"

#include <QLabel>
#include <QWidget>

#include <optional>

namespace glimra::desktop {

/// Names the profile on the canvas, in the painter's title and its menu of profiles, and says so when the
/// keyboard has come to show another one. Main thread.
class EditedProfile {
public:
    EditedProfile(QWidget* painter, app::AppDelegate& delegate, platform::RunLoop& runLoop);
    ~EditedProfile();
    EditedProfile(const EditedProfile&) = delete;
    EditedProfile& operator=(const EditedProfile&) = delete;

    void show();

private:
    void watch(bool isVisible);

    QWidget* m_painter;
    QLabel* m_note;
    app::AppDelegate& m_delegate;
    platform::RunLoop& m_runLoop;
    const QString m_title;
    /// Nobody tells when the game changes the profile; while the painter shows it is looked at.
    std::optional<platform::TimerId> m_look;
};

} // namespace glimra::desktop
