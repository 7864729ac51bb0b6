#include "desktop/windows/edited_profile.h"

#include <chrono>

namespace glimra::desktop {

namespace {

constexpr std::chrono::milliseconds kPeriod{200};

} // namespace

EditedProfile::EditedProfile(QWidget* painter, app::AppDelegate& delegate, platform::RunLoop& runLoop)
    : m_painter(painter),
      m_note(painter->findChild<QLabel*>("shownProfileNote")),
      m_delegate(delegate),
      m_runLoop(runLoop),
      m_title(painter->windowTitle()) {
    m_note->hide();
    delegate.outlets().colorProgrammerWindow.visible.changed.observe(
        [this](bool isVisible) { watch(isVisible); });
}

EditedProfile::~EditedProfile() {
    if (m_look)
        m_runLoop.cancel(*m_look);
}

void EditedProfile::watch(bool isVisible) {
    if (m_look)
        m_runLoop.cancel(*m_look);
    m_look.reset();
    if (!isVisible)
        return;
    m_look = m_runLoop.repeat(kPeriod, [this] { show(); });
    show();
}

void EditedProfile::show() {
    if (!m_delegate.outlets().colorProgrammerWindow.visible.get())
        return;
    const int edited = m_delegate.state().canvas.profile;
    const int shown = m_delegate.state().profile.activeColorProfile;
    m_painter->setWindowTitle(m_title + QString(" – Profile %1").arg(edited));
    m_delegate.outlets().currentProfilePopup.selected.set(edited - 1);
    m_note->setText(QString("The game now shows profile %1.").arg(shown));
    m_note->setVisible(shown != edited);
}

} // namespace glimra::desktop
