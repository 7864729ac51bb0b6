#include "desktop/windows/questions.h"

#include <QLabel>
#include <QPushButton>

namespace glimra::desktop {

namespace {

/// Whatever button was clicked last time.
void makeDefault(const QWidget* window, const char* button, const char* focused) {
    window->findChild<QPushButton*>(button)->setDefault(true);
    window->findChild<QWidget*>(focused)->setFocus();
}

} // namespace

Questions::Questions(QWidget* unsavedEdits, QWidget* copyProfile, app::AppDelegate& delegate)
    : m_delegate(delegate) {
    app::Outlets& outlets = delegate.outlets();
    outlets.profileChangeAlert.visible.changed.observe([this, unsavedEdits](bool isVisible) {
        if (isVisible)
            ask(unsavedEdits);
    });
    outlets.copyProfileDialog.visible.changed.observe([this, copyProfile](bool isVisible) {
        if (isVisible)
            prepareCopy(copyProfile);
    });
    for (platform::PopUp* const choice : {&outlets.fromProfileMenu, &outlets.toProfileMenu})
        choice->selected.changed.observe([this, copyProfile](int) { wordCopy(copyProfile); });
}

void Questions::ask(QWidget* unsavedEdits) const {
    unsavedEdits->findChild<QLabel*>("alertTitle")
        ->setText(QString("Save the changes to Profile %1?").arg(m_delegate.state().canvas.profile));
    makeDefault(unsavedEdits, "saveButton", "saveButton");
}

void Questions::prepareCopy(QWidget* copyProfile) const {
    wordCopy(copyProfile);
    makeDefault(copyProfile, "copyCancelButton", "fromProfileMenu");
}

void Questions::wordCopy(QWidget* copyProfile) const {
    const int from = m_delegate.outlets().fromProfileMenu.selected.get() + 1;
    const int to = m_delegate.outlets().toProfileMenu.selected.get() + 1;
    copyProfile->findChild<QLabel*>("copyText")
        ->setText(from == to ? QString("Choose two different profiles.")
                             : QString("Profile %1 is overwritten with the colors, the painted keys and the "
                                       "cooldown display of Profile %2. Undo brings it back.")
                                   .arg(to)
                                   .arg(from));
}

} // namespace glimra::desktop
