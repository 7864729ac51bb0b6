#pragma once

#include "desktop/windows/text_window.h"

#include <QProcess>
#include <QStringList>

namespace glimra::desktop {

/// Shows what the doctor says of this machine. The doctor runs as a program of its own: what it asks, a
/// server or a device, may take seconds to answer. Main thread.
class MachineCheck final : public QObject {
public:
    /// `arguments`: of a doctor who looks at what this program uses.
    MachineCheck(QWidget* parent, QStringList arguments);
    ~MachineCheck() override;

    void start();

private:
    QStringList m_arguments;
    TextWindow m_window;
    QProcess m_doctor;
};

} // namespace glimra::desktop
