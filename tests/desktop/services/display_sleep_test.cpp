#include "desktop/services/x11_display_sleep.h"

#include "support/private_bus.h"
#include "support/x_server.h"

#include <gmock/gmock.h>

#include <memory>
#include <utility>
#include <vector>

namespace glimra::desktop {
namespace {

using glimra::tests::eventually;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

/// "activate" or "reset".
void screenSaver(const tests::XvfbServer& server, const std::string& command) {
    ASSERT_EQ(tests::run({"xset", "s", command}, server.display()), 0);
}

class DisplaySleepTest : public ::testing::Test {
protected:
    DisplaySleepTest() { glimra::tests::ensureApplication(); }

    void observe(const std::string& display) {
        displays = std::make_unique<X11DisplaySleep>(display);
        displays->observe([this](SleepSource source, bool asleep) { told.emplace_back(source, asleep); });
    }
    bool eventuallyTold(SleepSource source, bool asleep) {
        return eventually([&] { return !told.empty() && told.back() == std::pair(source, asleep); });
    }

    std::vector<std::pair<SleepSource, bool>> told;
    std::unique_ptr<X11DisplaySleep> displays;
};

TEST_F(DisplaySleepTest, HearsTheScreenSaver) {
    tests::XvfbServer server;
    observe(server.display());
    EXPECT_THAT(told, ElementsAre(Pair(SleepSource::ScreenSaver, false)));
    for (int round = 0; round < 2; ++round) {
        screenSaver(server, "activate");
        EXPECT_TRUE(eventuallyTold(SleepSource::ScreenSaver, true));
        screenSaver(server, "reset");
        EXPECT_TRUE(eventuallyTold(SleepSource::ScreenSaver, false));
    }
}

TEST_F(DisplaySleepTest, NoticesABlankedScreenAtTheStartAndTheEndOfTheServer) {
    tests::XvfbServer server;
    screenSaver(server, "activate");
    observe(server.display());
    EXPECT_THAT(told, ElementsAre(Pair(SleepSource::ScreenSaver, true)));
    server.process().end(SIGTERM);
    EXPECT_TRUE(eventually([&] { return told.size() >= 3; }));
    EXPECT_THAT(told, ElementsAre(Pair(SleepSource::ScreenSaver, true), Pair(SleepSource::ScreenSaver, false),
                                  Pair(SleepSource::DisplayPower, false)));
}

TEST_F(DisplaySleepTest, IsSilentWithoutAServer) {
    observe("nonexistent");
    EXPECT_THAT(told, IsEmpty());
}

} // namespace
} // namespace glimra::desktop
