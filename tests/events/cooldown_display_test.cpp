#include "support/events_machine.h"

#include "platform/decimal_text.h"
#include "simulated/run_loop.h"

#include <gmock/gmock.h>

#include <limits>

namespace glimra::events {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Calls = std::vector<std::string>;

/// What the run loop serves while a key blinks, of two profiles that show cooldowns.
class BlinkTest : public ::testing::Test {
protected:
    BlinkTest() {
        machine.state.keyboardColorSet[lighting::kCooldownSlot] = {1.0, 0.0, 0.0};
        machine.state.useSpellCooldowns = {true, true, false, true};
        machine.dispatcher.evaluateMessage("`@");
        driver.take();
    }

    void readyWhile(std::function<void()> action) {
        runLoop.after(std::chrono::milliseconds(20), std::move(action));
        machine.dispatcher.evaluateMessage("`\x01");
    }

    simulated::SimulatedRunLoop runLoop;
    tests::FakeDriver driver;
    tests::EventsMachine machine{runLoop, driver};
    const Calls restored{"SetLightingForKeyWithKeyName 2 0 100 100"};
    const Calls flash{"FlashSingleKey 2 100 100 100 1000 75"};
};

TEST_F(BlinkTest, DeathEndsTheLightButNotTheBookkeeping) {
    readyWhile([this] {
        EXPECT_TRUE(machine.state.dimmedKeys.contains(2)); // until every profile has been restored
        machine.effects.deadAnimationPlaying = true;
    });
    EXPECT_THAT(driver.take(), ElementsAre(restored[0], flash[0]));
    EXPECT_TRUE(machine.state.dimmedKeys.empty());
    EXPECT_EQ(machine.state.keyboardColorBitmap[3][*lighting::keyBitmapOffset(2) + 1], 255);
}

TEST_F(BlinkTest, UserSwitchesTheDisplayOff) {
    machine.canvas.fillFrom(machine.state);
    readyWhile([this] {
        machine.display.showCooldowns(false);
        driver.take();
    });
    EXPECT_THAT(driver.take(), ElementsAre(flash[0]));
    EXPECT_TRUE(machine.state.dimmedKeys.empty());
    EXPECT_FALSE(machine.state.useSpellCooldowns[1]);
}

TEST_F(BlinkTest, SuppressionBeginsWithTheNextKey) {
    machine.dispatcher.evaluateMessage("``");
    driver.take();
    readyWhile([this] { machine.cooldowns.supressCooldownBlinkCounter = 5; });
    const Calls calls = driver.take();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), flash[0]), 2);
    EXPECT_EQ(calls.size(), 6U); // the other key is restored twice without a flash
    EXPECT_EQ(machine.cooldowns.supressCooldownBlinkCounter, 4);
}

TEST_F(BlinkTest, NothingMoreIsLitOnceTheApplicationHasEnded) {
    readyWhile([this] { runLoop.terminate(); });
    EXPECT_EQ(driver.take(), restored);
}

TEST_F(BlinkTest, AReportWithoutDataIsDropped) {
    machine.cooldowns.supressCooldownBlinkCounter = 5;
    for (const char* message : {"`", "[", "]", "{", "}"})
        machine.dispatcher.evaluateMessage(message);
    EXPECT_THAT(driver.take(), IsEmpty());
    EXPECT_TRUE(machine.state.dimmedKeys.contains(2));
    EXPECT_EQ(machine.cooldowns.supressCooldownBlinkCounter, 5);
}

TEST_F(BlinkTest, AStoredBlinkTimeThatIsNoNumberIsSaid) {
    machine.defaults.set("blinkTimePref", 0.001);
    machine.display.loadBlinkTime();
    EXPECT_THAT(machine.systemLog.lines, IsEmpty());
    machine.defaults.set("blinkTimePref", std::numeric_limits<double>::infinity());
    machine.display.loadBlinkTime();
    EXPECT_EQ(machine.blinkTimeTextbox.text.get(), "1.0");
    EXPECT_THAT(machine.systemLog.lines, ElementsAre(HasSubstr("\"blinkTimePref\"")));
}

TEST(LeadingNumberTest, TakesTheNumberThatATextBeginsWith) {
    using platform::leadingNumber;
    EXPECT_EQ(leadingNumber(" \t+1.5 s"), 1.5);
    EXPECT_EQ(leadingNumber("-.5e1eggs"), -5.0);
    EXPECT_EQ(leadingNumber("1,5"), 1.0);
    for (const char* none : {"", "  ", "+", "+-1", "inf", "-nan", "e5", "x1", "1e999", "1e-999"})
        EXPECT_EQ(leadingNumber(none), 0.0) << none;
}

} // namespace
} // namespace glimra::events
