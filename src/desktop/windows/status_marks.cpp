#include "desktop/windows/status_marks.h"

#include "desktop/doctor/checks.h"
#include "desktop/windows/flow_layout.h"

#include <QFrame>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace glimra::desktop {

namespace {

/// The add-on paints its strip only while it has something to say.
constexpr int kLongSilence = 120;
constexpr int kNoteWidth = 400;

struct Place {
    const char* name;
    const char* command;
};
constexpr std::array<Place, 3> kPlaces{
    {{"keyboardMark", "explainKeyboard"}, {"gameMark", "explainGame"}, {"stripMark", "explainStrip"}}};

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void append(QStringList& sentences, const doctor::Findings& findings) {
    for (const doctor::Finding& finding : findings)
        sentences.append(
            QString::fromStdString(finding.text + (finding.remedy.empty() ? "" : " ") + finding.remedy));
}

/// A note under the mark, until the next click or key.
void showNote(const QuietButton& mark, const MarkText& text) {
    auto* const note = new QFrame(mark.window(), Qt::Popup);
    note->setObjectName("markNote");
    note->setAttribute(Qt::WA_DeleteOnClose);
    note->setFrameShape(QFrame::StyledPanel);
    note->setAccessibleName(text.label);
    auto* const layout = new QVBoxLayout(note);
    layout->setContentsMargins(16, 14, 16, 14);
    auto* const heading = new QLabel(text.label, note);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
    auto* const words = new QLabel(text.sentences.join("\n\n"), note);
    words->setObjectName("markWords");
    words->setTextFormat(Qt::PlainText);
    words->setWordWrap(true);
    words->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    layout->addWidget(heading);
    layout->addWidget(words);
    const QRect room = mark.screen()->availableGeometry();
    const int width = std::min(kNoteWidth, room.width());
    note->resize(width, layout->totalHeightForWidth(width));
    const QPoint wanted = mark.mapToGlobal(QPoint(mark.width() - width, mark.height() + 4));
    note->move(std::clamp(wanted.x(), room.left(), std::max(room.left(), room.right() - width)),
               std::clamp(wanted.y(), room.top(), std::max(room.top(), room.bottom() - note->height())));
    note->show();
    words->setFocus();
}

} // namespace

MarkText keyboardMark(const StatusSnapshot& snapshot, const doctor::Findings& drivers) {
    const QString& name = snapshot.keyboardName;
    QString sentence = name + ".";
    sentence[0] = sentence[0].toUpper();
    if (name.startsWith("keyboard lost"))
        return {Mark::Bad,
                "Keyboard lost",
                {sentence, "Plug it in again, or turn its server on; it lights up by itself then."}};
    MarkText text{Mark::Good, "Keyboard", {sentence}};
    if (name.startsWith("no keyboard")) {
        text = {Mark::Bad, "No keyboard", {sentence}};
    } else if (name.endsWith("in this window")) {
        text = {Mark::Partly,
                "Keyboard: drawn only",
                {snapshot.hasWindow ? "No keyboard lights up but the one in this window."
                                    : "No keyboard lights up."}};
    } else {
        text.sentences.append(
            "It shows what the keyboard in this window shows. Test lights it red and white; "
            "Reset ends that.");
        return text;
    }
    append(text.sentences, drivers);
    if (snapshot.hasWindow)
        text.sentences.append("Another way to light it: Light the Keyboard By, in the menu Keyboard.");
    return text;
}

MarkText gameMark(const StatusSnapshot& snapshot, const doctor::Findings& addon) {
    MarkText text{Mark::Good, "Game in front", {"World of Warcraft is the application in front."}};
    if (!snapshot.gameIsInFront) {
        text = {Mark::Partly, "Game not in front", {"World of Warcraft is not the application in front."}};
        text.sentences.append(snapshot.switchesToProfile2
                                  ? "Profile 2 shows meanwhile; that is chosen in Set Colors."
                                  : "What it says is shown all the same, as long as its strip can be read.");
    }
    append(text.sentences, addon);
    return text;
}

MarkText stripMark(const StatusSnapshot& snapshot) {
    const bool isSeen = snapshot.secondsSinceStrip && *snapshot.secondsSinceStrip < kLongSilence;
    MarkText text{isSeen ? Mark::Good : Mark::Partly, isSeen ? "Strip seen" : "Strip not seen", {}};
    if (snapshot.capture == CaptureState::NoServer || snapshot.capture == CaptureState::ScreenRefused) {
        text.mark = Mark::Bad;
        text.label = "Strip can't be read";
    } else if (snapshot.demonstrationPlays) {
        text = {Mark::Partly,
                "Strip: demonstration",
                {"The demonstration plays. It ends when the game's strip shows."}};
    }
    text.sentences.append(toQString(captureMessage(snapshot.capture)));
    append(text.sentences, {doctor::stripFinding(isSeen, snapshot.isCalibrated)});
    return text;
}

StatusMarks::StatusMarks(Parts parts) : QObject(parts.container), m_parts(std::move(parts)) {
    for (std::size_t index = 0; index < kCount; ++index) {
        auto* const mark = new QuietButton(m_parts.container);
        m_marks[index] = mark;
        mark->setObjectName(kPlaces[index].name);
        mark->setProperty("command", kPlaces[index].command);
        mark->setToolTip("What this means, and what to do");
        m_parts.binder.setCommand(kPlaces[index].command, [this, index] { explain(index); });
    }
    new FlowLayout(m_parts.container, Qt::AlignRight, 0);
    m_parts.watch.seen.observe([this](const StatusSnapshot&) { show(); });
    show();
}

MarkText StatusMarks::textOf(std::size_t index, const doctor::Findings& drivers) const {
    const StatusSnapshot& snapshot = m_parts.watch.snapshot();
    if (index == 0)
        return keyboardMark(snapshot, drivers);
    return index == 1 ? gameMark(snapshot, m_parts.addon) : stripMark(snapshot);
}

void StatusMarks::show() {
    for (std::size_t index = 0; index < kCount; ++index) {
        const MarkText text = textOf(index, {});
        m_marks[index]->setMark(text.mark);
        if (m_marks[index]->text() == text.label)
            continue;
        m_marks[index]->setText(text.label);
        m_marks[index]->updateGeometry();
    }
}

void StatusMarks::explain(std::size_t index) {
    showNote(*m_marks[index], textOf(index, index == 0 ? m_parts.lookAtDrivers() : doctor::Findings{}));
}

} // namespace glimra::desktop
