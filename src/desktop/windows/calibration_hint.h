#pragma once

#include "app/app_delegate.h"
#include "desktop/windows/interface_binder.h"

#include <functional>

namespace glimra::desktop {

/// How many real pixels for a point a calibration looks at, 1 or 2.
struct CalibrationPixels {
    std::function<int()> get;
    std::function<void(int)> set;
};

/// After a calibration that failed: a panel of the main window with what went wrong and what to do, until the
/// next one begins. A strip that is too wide can be looked for at half its width.
class CalibrationHint {
public:
    CalibrationHint(QWidget* mainWindow, app::AppDelegate& delegate, InterfaceBinder& binder,
                    CalibrationPixels pixels);

    /// Calibrates with the other number of pixels for a point.
    void calibrateOtherwise();
    void dismiss();

private:
    void show(screenlink::SearchFailure failure);

    QWidget* m_window;
    app::AppDelegate& m_delegate;
    InterfaceBinder& m_binder;
    CalibrationPixels m_pixels;
    /// What the calibration that failed has not looked at.
    int m_otherPixels = 2;
};

} // namespace glimra::desktop
