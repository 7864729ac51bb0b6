#include "app/help.h"

namespace glimra::app {

void Help::loadHelpText() {
    m_parts.outlets.helpTextView.text.set(m_parts.bundle.helpText);
}

void Help::aboutMenuItem() {
    m_parts.outlets.aboutVersionLabel.text.set("Version " + m_parts.bundle.shortVersion + " (" +
                                               m_parts.bundle.version + ")");
    m_parts.outlets.aboutCopyLabel.text.set(m_parts.bundle.copyright);
    m_parts.outlets.aboutLinkLabel.text.set(m_parts.bundle.homePage);
    m_parts.outlets.aboutWindow.bringToFront();
}

void Help::openHomePage() {
    m_parts.workspace.openUrl(m_parts.bundle.homePage);
}

void Help::openDownloadsPage() {
    m_parts.workspace.openUrl(m_parts.bundle.downloadPage);
}

void Help::helpMenuItem() {
    m_parts.outlets.helpWindow.bringToFront();
    m_parts.messages.confirmCalibrate = true;
}

void Help::myBtnClicked() {
    m_parts.runLoop.post([this] { m_parts.outlets.helpWindow.bringToFront(); });
    m_parts.messages.confirmCalibrate = true;
}

} // namespace glimra::app
