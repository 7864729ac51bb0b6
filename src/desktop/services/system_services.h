#pragma once

#include "platform/system_services.h"

#include <QObject>

#include <random>

namespace glimra::desktop {

/// Writes to standard error, which desktop sessions usually keep in the journal.
class StderrSystemLog final : public platform::SystemLog {
public:
    void write(std::string_view line) override;
};

class RandomNumbers final : public platform::RandomNumbers {
public:
    std::uint32_t uniform(std::uint32_t upperBound) override;

private:
    std::mt19937 m_engine{std::random_device{}()};
};

class Modifiers final : public QObject, public platform::Modifiers {
public:
    /// After the application object.
    Modifiers();

    /// The Alt key, held at a click. In a shortcut, where the menus and buttons have it too, it has no
    /// meaning of its own.
    bool optionKeyIsDown() const override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool m_lastInputWasMouse = false;
};

} // namespace glimra::desktop
