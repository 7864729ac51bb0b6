#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <cstdint>
#include <functional>

class QWidget;

namespace glimra::desktop {

/// Whether anybody can see a widget's window: not while it is hidden, minimized, on another workspace or, on
/// X11 without a compositor, wholly behind other windows. Main thread.
class WindowVisibility final : public QObject, private QAbstractNativeEventFilter {
public:
    /// `seenAgain` is called when the window may be seen again, sometimes also while it is seen. The widget
    /// outlives this.
    WindowVisibility(QWidget& widget, std::function<void()> seenAgain);
    ~WindowVisibility() override;

    bool isSeen() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool nativeEventFilter(const QByteArray& kind, void* message, qintptr* result) override;
    void watchWindow();

    QWidget& m_widget;
    std::function<void()> m_seenAgain;
    std::uint32_t m_watched = 0;
    bool m_isCovered = false;
};

} // namespace glimra::desktop
