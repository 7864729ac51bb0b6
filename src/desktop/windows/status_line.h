#pragma once

#include "desktop/windows/profile_names.h"
#include "desktop/windows/program_watch.h"

#include <QLabel>
#include <QMainWindow>

namespace glimra::desktop {

/// What is going on, in plain words: the light that shows, and what there is to tell besides.
struct ActivityText {
    QString headline;
    QString details;
};
ActivityText activityText(const StatusSnapshot& snapshot);

/// What the program sees, in plain words, without the profile.
QString statusText(const StatusSnapshot& snapshot);

/// Keeps the line under the drawn keyboard and the status bar up to date. What does not fit into the bar is
/// left out at its end, but never the profile; the tool tip has all of it.
class StatusLine final : public QObject {
public:
    StatusLine(QMainWindow* window, ProgramWatch& watch, const ProfileNames& names);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void show(const StatusSnapshot& snapshot);
    void showActivity(const ActivityText& activity);
    void elide();

    QMainWindow* m_window;
    const ProfileNames& m_names;
    QLabel* m_label;
    QLabel* m_profile;
    QString m_text;
};

} // namespace glimra::desktop
