#include "app/help.h"

namespace glimra::app {

void Help::loadHelpText() {
    m.outlets.helpTextView.text.set(m.bundle.helpText);
}

void Help::aboutMenuItem() {
    m.outlets.aboutVersionLabel.text.set("Version " + m.bundle.shortVersion + " (" + m.bundle.version + ")");
    m.outlets.aboutCopyLabel.text.set(m.bundle.copyright);
    m.outlets.aboutLinkLabel.text.set(m.bundle.homePage);
    m.outlets.aboutWindow.bringToFront();
}

void Help::openHomePage() {
    m.workspace.openUrl(m.bundle.homePage);
}

void Help::openDownloadsPage() {
    m.workspace.openUrl(m.bundle.downloadPage);
}

void Help::helpMenuItem() {
    m.outlets.helpWindow.bringToFront();
    m.messages.confirmCalibrate = true;
}

void Help::myBtnClicked() {
    m.runLoop.post([this] { m.outlets.helpWindow.bringToFront(); });
    m.messages.confirmCalibrate = true;
}

} // namespace glimra::app
