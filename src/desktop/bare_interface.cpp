#include "desktop/user_interface.h"

#include "platform/monotonic_clock.h"

namespace glimra::desktop {

namespace {

class BareInterface final : public UserInterface {
public:
    explicit BareInterface(const Parts& parts)
        : m_binder(parts.delegate),
          m_watch({.window = nullptr,
                   .delegate = parts.delegate,
                   .userDefaults = parts.machine.settings,
                   .keyboard = parts.machine.keyboard.drawn(),
                   .keyboardName = parts.machine.keyboard.description,
                   .captureState = [&machine = parts.machine] { return machine.readerCapture.state(); },
                   .demonstrationPlays = [] { return false; },
                   .now = platform::monotonicNow}) {}

    InterfaceBinder& binder() override { return m_binder; }
    void launch(const std::function<void()>& launch) override { launch(); }
    bool bringToFront() override { return false; }
    void takeChangedSettings() override {}
    const StatusSnapshot& look() override {
        m_watch.look();
        return m_watch.snapshot();
    }

private:
    InterfaceBinder m_binder;
    ProgramWatch m_watch;
};

} // namespace

std::unique_ptr<UserInterface> makeBareInterface(const UserInterface::Parts& parts) {
    return std::make_unique<BareInterface>(parts);
}

} // namespace glimra::desktop
