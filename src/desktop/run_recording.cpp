#include "desktop/output_file.h"
#include "desktop/run_witness.h"
#include "platform/monotonic_clock.h"
#include "recording/recorded_platform.h"

#include <functional>

namespace glimra::desktop {

namespace {

class RunRecording final : public RunWitness {
public:
    RunRecording(const std::string& file, const platform::Platform& machine)
        : m_file(file),
          m_recorder(
              platform::monotonicNow, [this](std::string_view lines) { return m_file.append(lines); },
              [this](const std::string& why) { m_tell(why + " It is in " + m_file.path() + "."); }),
          m_recorded(machine, m_recorder) {}

    const platform::Platform& platform() const override { return m_recorded.platform(); }

    void follow(app::AppDelegate& delegate, InterfaceBinder& binder) override {
        m_tell = [&delegate](std::string_view line) { delegate.operations().log.tell(line); };
        m_recorded.follow(delegate.outlets());
        binder.aboutToSend.observe([this](const app::ActionRow& action, const app::ActionArgument& argument) {
            m_recorder.beginAction(action, argument);
        });
        binder.sent.observe([this] { m_recorder.endAction(); });
    }
    void aboutToLaunch() override {
        m_recorder.launch(platform().userDefaults, platform().mainCapture.get().backingScaleFactor());
    }
    void launched() override { m_recorder.launched(); }
    void token(std::string_view token) override { m_recorder.token(token); }
    void aboutToQuit() override { m_recorder.quit(); }

private:
    std::function<void(std::string_view)> m_tell = [](std::string_view) {};
    OutputFile m_file;
    recording::ScriptRecorder m_recorder;
    recording::RecordedPlatform m_recorded;
};

} // namespace

std::unique_ptr<RunWitness> recordRun(const std::string& file, const platform::Platform& machine) {
    return std::make_unique<RunRecording>(file, machine);
}

} // namespace glimra::desktop
