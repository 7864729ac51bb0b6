#pragma once

#include "app/app_delegate.h"

#include <QWidget>

namespace glimra::desktop {

/// Words the questions that can cost a profile, and sees to it that Enter gives the same answer each time:
/// the one that loses nothing. Main thread.
class Questions {
public:
    Questions(QWidget* unsavedEdits, QWidget* copyProfile, app::AppDelegate& delegate);

private:
    void ask(QWidget* unsavedEdits) const;
    void prepareCopy(QWidget* copyProfile) const;
    void wordCopy(QWidget* copyProfile) const;

    app::AppDelegate& m_delegate;
};

} // namespace glimra::desktop
