#include "desktop/windows/machine_check.h"

#include <QCoreApplication>

#include <utility>

namespace glimra::desktop {

MachineCheck::MachineCheck(QWidget* parent, QStringList arguments)
    : m_arguments(std::move(arguments)),
      m_window(parent, "machineCheckWindow", "Check This Machine") {
    m_doctor.setProcessChannelMode(QProcess::MergedChannels);
    connect(&m_doctor, &QProcess::finished, this,
            [this] { m_window.show(QString::fromUtf8(m_doctor.readAll())); });
    connect(&m_doctor, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            m_window.show("The check could not be started: " + m_doctor.errorString());
    });
}

MachineCheck::~MachineCheck() {
    m_doctor.disconnect(this);
    m_doctor.kill();
    m_doctor.waitForFinished(1000);
}

void MachineCheck::start() {
    m_window.show("Looking at the screen, the keyboards, the add-on and the desktop …");
    if (m_doctor.state() == QProcess::NotRunning)
        m_doctor.start(QCoreApplication::applicationFilePath(), m_arguments);
}

} // namespace glimra::desktop
