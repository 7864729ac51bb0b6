#include "desktop/services/sleep_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace glimra::desktop {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SleepWatchTest : public ::testing::Test {
protected:
    void observe() {
        watch.observe([this] { told.push_back("sleep"); }, [this] { told.push_back("wake"); });
    }

    SleepWatch watch;
    std::vector<std::string> told;
};

TEST_F(SleepWatchTest, TellsEachTransitionOnceWhateverTheOrder) {
    observe();
    watch.set(SleepSource::Machine, false);
    EXPECT_THAT(told, IsEmpty());
    watch.set(SleepSource::ScreenSaver, true);
    watch.set(SleepSource::ScreenSaver, true);
    watch.set(SleepSource::Machine, true);
    watch.set(SleepSource::ScreenSaver, false);
    EXPECT_THAT(told, ElementsAre("sleep"));
    watch.set(SleepSource::DisplayPower, true);
    watch.set(SleepSource::Machine, false);
    watch.set(SleepSource::Machine, false);
    EXPECT_THAT(told, ElementsAre("sleep"));
    watch.set(SleepSource::DisplayPower, false);
    EXPECT_THAT(told, ElementsAre("sleep", "wake"));
    watch.set(SleepSource::Machine, true);
    EXPECT_THAT(told, ElementsAre("sleep", "wake", "sleep"));
}

TEST_F(SleepWatchTest, TellsASleepThatIsUnderWayButNoneThatIsOver) {
    watch.set(SleepSource::Machine, true);
    watch.set(SleepSource::Machine, false);
    watch.set(SleepSource::ScreenSaver, true);
    observe();
    EXPECT_THAT(told, ElementsAre("sleep"));
}

} // namespace
} // namespace glimra::desktop
