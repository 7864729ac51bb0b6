#include "trace/traced_services.h"

#include <gmock/gmock.h>

namespace glimra::trace {
namespace {

using testing::ElementsAre;

/// Records what reaches the platform, and how many lines had been written by then.
struct RecordingServices final : platform::ChildProcesses,
                                 platform::Sounds,
                                 platform::SystemLog,
                                 platform::ProcessActivity {
    int lines = 0;
    std::vector<std::string> calls;

    void note(std::string_view call) { calls.push_back(std::to_string(lines) + " " + std::string(call)); }
    void start(const std::string& path, const std::vector<std::string>&) override { note(path); }
    void play(std::string_view name) override { note(name); }
    void write(std::string_view line) override { note(line); }
    void begin(std::string_view reason) override { note(reason); }
    void end(std::string_view reason) override { note(reason); }
};

TEST(TracedServices, AreWrittenThenPassedOn) {
    RecordingServices services;
    TraceWriter writer([] { return platform::Time{}; }, [&](std::string_view) { ++services.lines; });
    TracedChildProcesses(services, writer).start("/bin/p", {"a b"});
    TracedSounds(services, writer).play("Tink");
    TracedSystemLog(services, writer).write("said");
    TracedProcessActivity activity(services, writer);
    activity.begin("on");
    activity.end("off");
    EXPECT_THAT(services.calls, ElementsAre("1 /bin/p", "2 Tink", "3 said", "4 on", "5 off"));
}

} // namespace
} // namespace glimra::trace
