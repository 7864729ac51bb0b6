#include "desktop/windows/calibration_hint.h"

#include <QLabel>
#include <QPushButton>

#include <algorithm>
#include <cmath>
#include <utility>

namespace glimra::desktop {

using screenlink::SearchFailure;

namespace {

const char* textOf(SearchFailure failure, int pixelsPerPoint) {
    switch (failure) {
    case SearchFailure::NoRedCell:
        return "The calibration failed: no red cell was seen in the top left corner of the screen. Is the "
               "add-on showing its pattern (/glimracal in the chat box)? Is something in front of it?";
    case SearchFailure::NoPattern:
        return "The calibration failed: there was a red cell, but not the whole pattern of eleven cells. Is "
               "the strip narrower than 20 pixels, or a part of it covered? Does a night light or color "
               "filter tint the screen?";
    case SearchFailure::TooWide:
        return pixelsPerPoint == 1
                   ? "The calibration failed: the strip is wider than 188 pixels. Make it narrower in the "
                     "add-on's options, or let Glimra look at every second pixel, which is enough for 376."
                   : "The calibration failed: the strip is wider than 376 pixels. Make it narrower in the "
                     "add-on's options.";
    }
    return "";
}

Mark markOf(CalibrationHint::State state) {
    switch (state) {
    case CalibrationHint::State::Found:
        return Mark::Good;
    case CalibrationHint::State::Failed:
        return Mark::Bad;
    default:
        return Mark::Partly;
    }
}

} // namespace

CalibrationHint::CalibrationHint(Parts parts) : m_parts(std::move(parts)) {
    InterfaceBinder& binder = m_parts.binder;
    screenlink::Calibration& calibration = m_parts.delegate.operations().calibration;
    binder.setCommand("calibrateOtherwise", [this] { calibrateOtherwise(); });
    binder.setCommand("calibrateAgain", [this] { calibrate(); });
    binder.setCommand("calibrationCancel", [&calibration] { calibration.cancel(); });
    binder.setCommand("calibrationDismiss", [this] { become(State::None); });
    binder.aboutToSend.observe(
        [this](const app::ActionRow& action, const app::ActionArgument&) { noteBeginning(action); });
    binder.sent.observe([this] { noteEnd(); });
    calibration.succeeded.observe([this] { become(State::Found); });
    calibration.failure.changed.observe([this](const std::optional<SearchFailure>& failure) {
        m_pixelsLookedAt = m_parts.pixels.get();
        if (failure)
            become(State::Failed);
    });
    m_parts.watch.seen.observe([this](const StatusSnapshot&) {
        if (m_state == State::Running)
            become(State::Running);
    });
    show();
}

void CalibrationHint::calibrate() {
    // The first command only asks whether it is meant, as after every calibration.
    if (m_parts.delegate.state().messages.confirmCalibrate)
        m_parts.binder.send("calibrateMI:");
    m_parts.binder.send("calibrateMI:");
}

void CalibrationHint::calibrateOtherwise() {
    m_parts.pixels.set(m_pixelsLookedAt == 1 ? 2 : 1);
    calibrate();
}

int CalibrationHint::secondsLeft() const {
    const auto left =
        std::chrono::ceil<std::chrono::seconds>(m_began + screenlink::kSearchTime - m_parts.now());
    return std::max(0, static_cast<int>(left.count()));
}

void CalibrationHint::noteBeginning(const app::ActionRow& action) {
    if (!action.selector.starts_with("calibrate") || m_parts.delegate.state().messages.confirmCalibrate ||
        m_parts.delegate.operations().calibration.isRunning())
        return;
    m_began = m_parts.now();
    become(State::Running);
}

void CalibrationHint::noteEnd() {
    // Other actions are sent while it runs; and when it has ended otherwise, it was noted already.
    if (m_state == State::Running && !m_parts.delegate.operations().calibration.isRunning())
        become(State::Canceled);
}

void CalibrationHint::become(State state) {
    m_state = state;
    show();
    changed.emit();
}

void CalibrationHint::show() {
    widget("calibrationPanel")->setVisible(m_state != State::None);
    m_parts.mainWindow->findChild<QLabel*>("calibrationText")->setText(text());
    auto* const mark = m_parts.mainWindow->findChild<QLabel*>("calibrationMark");
    mark->setPixmap(markPicture(markOf(m_state), mark->palette(), mark->fontMetrics().height(),
                                mark->devicePixelRatioF()));
    const bool isOver = m_state != State::Running;
    widget("calibrationCancel")->setVisible(!isOver);
    widget("calibrationDismiss")->setVisible(isOver);
    widget("calibrateAgain")->setVisible(m_state == State::Failed);
    const auto& failure = m_parts.delegate.operations().calibration.failure.get();
    auto* const otherwise = m_parts.mainWindow->findChild<QPushButton*>("calibrateOtherwise");
    otherwise->setText(m_pixelsLookedAt == 1 ? "Calibrate at Half Width" : "Calibrate at Full Width");
    otherwise->setVisible(m_state == State::Failed && failure && *failure != SearchFailure::NoRedCell &&
                          (m_pixelsLookedAt == 1) == (*failure == SearchFailure::TooWide));
}

QString CalibrationHint::text() const {
    const screenlink::ScanSettings& scan = m_parts.delegate.state().scan;
    const auto& failure = m_parts.delegate.operations().calibration.failure.get();
    switch (m_state) {
    case State::Running:
        return QString("Calibrating, %1 s left. Switch to the game and type /glimracal in its chat box. "
                       "Nothing may cover the top left corner of the screen.")
            .arg(secondsLeft());
    case State::Found:
        return QString("Calibrated: the strip was found, %1 pixels wide. Glimra reads it from now on.")
            .arg(std::lround(scan.scanWidth * m_parts.pixels.get()));
    case State::Failed:
        return failure ? textOf(*failure, m_pixelsLookedAt) : "";
    case State::Canceled:
        return "The calibration was canceled; nothing has changed.";
    case State::None:
        break;
    }
    return {};
}

} // namespace glimra::desktop
