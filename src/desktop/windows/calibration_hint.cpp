#include "desktop/windows/calibration_hint.h"

#include <QLabel>
#include <QPushButton>

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

} // namespace

CalibrationHint::CalibrationHint(QWidget* mainWindow, app::AppDelegate& delegate, InterfaceBinder& binder,
                                 CalibrationPixels pixels)
    : m_window(mainWindow),
      m_delegate(delegate),
      m_binder(binder),
      m_pixels(std::move(pixels)) {
    dismiss();
    m_delegate.operations().calibration.failure.changed.observe(
        [this](const std::optional<SearchFailure>& failure) {
            if (failure)
                show(*failure);
            else
                dismiss();
        });
}

void CalibrationHint::show(SearchFailure failure) {
    const int pixels = m_pixels.get();
    m_otherPixels = pixels == 1 ? 2 : 1;
    m_window->findChild<QLabel*>("calibrationText")->setText(textOf(failure, pixels));
    auto* const otherwise = m_window->findChild<QPushButton*>("calibrateOtherwise");
    otherwise->setText(pixels == 1 ? "Calibrate at Half Width" : "Calibrate at Full Width");
    otherwise->setVisible(failure != SearchFailure::NoRedCell &&
                          (pixels == 1) == (failure == SearchFailure::TooWide));
    m_window->findChild<QWidget*>("calibrationPanel")->show();
}

void CalibrationHint::calibrateOtherwise() {
    m_pixels.set(m_otherPixels);
    // The first command only asks whether it is meant, as after every calibration.
    if (m_delegate.state().messages.confirmCalibrate)
        m_binder.send("calibrateMI:");
    m_binder.send("calibrateMI:");
}

void CalibrationHint::dismiss() {
    m_window->findChild<QWidget*>("calibrationPanel")->hide();
}

} // namespace glimra::desktop
