#include "desktop/services/machine_sleep.h"

#include <utility>

namespace glimra::desktop {

namespace {

const QString kReason = QStringLiteral("Stop reading the screen");

} // namespace

MachineSleep::MachineSleep(LoginManager& manager, Teller tell)
    : m_tell(std::move(tell)),
      m_delay(manager, QStringLiteral("sleep"), QStringLiteral("delay")) {
    manager.observeSleep(this, [this](bool isAboutToSleep) { prepareForSleep(isAboutToSleep); });
    // The login manager that would have announced the waking is gone. But since we run, the machine is awake.
    manager.observePresence(this, [this](bool isThere) {
        if (isThere && !m_delay.isWanted())
            m_delay.take(kReason);
        m_tell(false);
    });
    m_delay.take(kReason);
}

void MachineSleep::prepareForSleep(bool isAboutToSleep) {
    if (isAboutToSleep) {
        m_tell(true);
        m_delay.drop();
    } else {
        m_delay.take(kReason);
        m_tell(false);
    }
}

} // namespace glimra::desktop
