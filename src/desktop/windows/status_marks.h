#pragma once

#include "desktop/doctor/finding.h"
#include "desktop/windows/interface_binder.h"
#include "desktop/windows/program_watch.h"
#include "desktop/windows/quiet_button.h"

#include <array>

namespace glimra::desktop {

/// How one part of the machine is, in words.
struct MarkText {
    Mark mark = Mark::Open;
    /// On the mark.
    QString label;
    /// What it means and what to do, one or two sentences each.
    QStringList sentences;
};

MarkText keyboardMark(const StatusSnapshot& snapshot, const doctor::Findings& drivers);
MarkText gameMark(const StatusSnapshot& snapshot, const doctor::Findings& addon);
MarkText stripMark(const StatusSnapshot& snapshot);

/// The three marks in the main window's head: keyboard, game and strip. A click on one says what it means and
/// what to do, in the doctor's words.
class StatusMarks final : public QObject {
public:
    struct Parts {
        /// Where the marks are made, to be bound like a designer's buttons.
        QWidget* container;
        InterfaceBinder& binder;
        ProgramWatch& watch;
        /// What could be lit, and by which driver.
        std::function<doctor::Findings()> lookAtDrivers;
        /// What was found of the add-on; empty while it is looked for.
        const doctor::Findings& addon;
    };

    explicit StatusMarks(Parts parts);

private:
    static constexpr std::size_t kCount = 3;

    MarkText textOf(std::size_t index, const doctor::Findings& drivers) const;
    void show();
    void explain(std::size_t index);

    Parts m_parts;
    std::array<QuietButton*, kCount> m_marks{};
};

} // namespace glimra::desktop
