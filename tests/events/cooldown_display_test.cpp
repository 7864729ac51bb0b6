#include "support/events_machine.h"
#include "support/replay_text.h"

#include "platform/decimal_text.h"
#include "simulated/run_loop.h"

#include <gmock/gmock.h>

#include <limits>

namespace glimra::events {
namespace {

using test::dumped;
using test::ledCalls;
using test::say;
using test::stateAfter;
using test::systemLog;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Calls = std::vector<std::string>;

const std::string kStart = "start\n";
/// Cooldowns are shown in profile 1 alone; then in 1 and 3.
const std::string kShown = "default \"useActionBarCooldowns1\" true\n";
const std::string kShownIn1And3 = kShown + "default \"useActionBarCooldowns3\" true\n";

std::string dimmedAfter(const std::string& script) {
    return stateAfter(script)["dimmedKeys"].dump();
}

/// The four bytes of a key's cell in a profile's bitmap, as hexadecimal digits.
std::string cellAfter(const std::string& script, int profile, lighting::KeyCode key) {
    const std::string bitmap = dumped(script + "\ndump bitmap " + std::to_string(profile));
    return bitmap.substr(*lighting::keyBitmapOffset(key) * 2, 8);
}

// Factory colours of profile 1's keys 1 and 2, and of a key on cooldown.
const std::string kBlueCell = "7f0000ff";
const std::string kCooldownCell = "00004cff";

TEST(CooldownDisplayTest, BitsNameTheSlotsOfTheirBar) {
    const auto dimmed = [](const std::string& message) { return dimmedAfter(kStart + say(message)); };
    EXPECT_EQ(dimmed("`~"), R"({"2":1,"3":1,"4":1,"5":1,"6":1,"7":1})");
    EXPECT_EQ(dimmed("[~"), R"({"8":1,"9":1,"10":1,"11":1,"12":1,"13":1})");
    EXPECT_EQ(dimmed("]~"), R"({"0":1,"59":1,"60":1,"61":1,"62":1,"63":1})");
    EXPECT_EQ(dimmed("{x"), R"({"0":1,"64":1,"65":1,"66":1})");
    EXPECT_EQ(dimmed("{\\u0006"), R"({"67":1,"68":1})");
    EXPECT_EQ(dimmed("`@"), R"({"2":1})");
    EXPECT_EQ(dimmed("`\\u0002"), R"({"7":1})");
    // Bits without a slot: the lowest, and those of characters that no strip can show.
    EXPECT_EQ(dimmed("`\\u0001"), "{}");
    EXPECT_EQ(dimmed("`\\u0080"), "{}");
    EXPECT_EQ(dimmed("`\\u00c0"), R"({"2":1})");
    EXPECT_EQ(dimmed("`\\u1042"), R"({"2":1,"7":1})");
    EXPECT_EQ(dimmed("`\\ud83d\\ude00"), "{}"); // U+1F600
    EXPECT_EQ(dimmed("`\\ud83d\\ude60"), R"({"2":1,"3":1})");
}

TEST(CooldownDisplayTest, KeysGoOnCooldownAndComeBackWithABlink) {
    const std::string marked = kShown + kStart + say("``");
    EXPECT_THAT(ledCalls(marked, 0.1),
                ElementsAre("0.2 StopEffectsOnKey 2", "0.2 SetLightingForKeyWithKeyName 2 30 0 0",
                            "0.2 StopEffectsOnKey 3", "0.2 SetLightingForKeyWithKeyName 3 30 0 0"));
    EXPECT_THAT(ledCalls(marked + say("``"), 0.3), IsEmpty());
    EXPECT_THAT(ledCalls(marked + say("`\\u0000"), 0.3),
                ElementsAre("0.4 SetLightingForKeyWithKeyName 2 0 0 50",
                            "0.45 FlashSingleKey 2 100 100 100 1000 75",
                            "0.45 SetLightingForKeyWithKeyName 3 0 50 100",
                            "0.5 FlashSingleKey 3 100 100 100 1000 75"));
    EXPECT_EQ(cellAfter(marked, 1, 2), kCooldownCell);
    EXPECT_EQ(cellAfter(marked + say("`\\u0000"), 1, 2), kBlueCell);
    EXPECT_EQ(dimmedAfter(marked + say("` ")), R"({"3":1})");
}

TEST(CooldownDisplayTest, NoProfileShowsThemYetTheyAreRemembered) {
    const std::string marked = kStart + say("`@") + say("]@");
    EXPECT_THAT(ledCalls(marked + say("`A") + say("`\\u0001"), 0.1), IsEmpty());
    EXPECT_EQ(cellAfter(marked, 1, 2), kBlueCell);
    EXPECT_EQ(dimmedAfter(marked), R"({"2":1,"59":1})");
    // Switched on later, they are all there.
    const std::string on = marked + "action \"cooldownCheck:\" on\n";
    EXPECT_EQ(cellAfter(on, 1, 2), kCooldownCell);
    EXPECT_EQ(cellAfter(on, 1, 59), kCooldownCell);
}

TEST(CooldownDisplayTest, EveryProfileThatShowsThemIsMarkedAndKeepsItsMarks) {
    const std::string marked = kShownIn1And3 + kStart + say("`@");
    // The live key is lit once for each of them.
    EXPECT_EQ(ledCalls(marked, 0.1).size(), 4U);
    for (const auto& [profile, cell] : {std::pair{1, kCooldownCell}, {2, kBlueCell}, {3, kCooldownCell}})
        EXPECT_EQ(cellAfter(marked, profile, 2), cell);
    // Other profiles on the keyboard change nothing in the marks of 1 and 3, and new ones come in.
    const std::string away = marked + say("2") + say("` ");
    EXPECT_EQ(cellAfter(away, 1, 3), kCooldownCell);
    EXPECT_EQ(cellAfter(away, 3, 3), kCooldownCell);
    EXPECT_EQ(cellAfter(away, 1, 2), kBlueCell);
    EXPECT_THAT(ledCalls(marked + say("2") + say("` "), 0.5), IsEmpty());
    EXPECT_EQ(cellAfter(marked + say("3"), 1, 2), kCooldownCell);
    EXPECT_EQ(cellAfter(marked + say("3"), 3, 2), kCooldownCell);
    EXPECT_EQ(cellAfter(marked + say("3") + say("1"), 3, 2), kCooldownCell);
    // Coming back, a key has the colour of the profile in memory in all of them, one after the other.
    const std::string ready =
        "default-color \"colorEColor3\" 0 1 0.5\n" + marked + say("3") + say("`\\u0001");
    EXPECT_EQ(cellAfter(ready, 1, 2), "7fff00ff");
    EXPECT_EQ(cellAfter(ready, 3, 2), "7fff00ff");
    EXPECT_THAT(ledCalls(ready, 0.5), ElementsAre("0.6 SetLightingForKeyWithKeyName 2 0 100 50",
                                                  "0.65 FlashSingleKey 2 100 100 100 1000 75",
                                                  "0.65 SetLightingForKeyWithKeyName 2 0 100 50",
                                                  "0.7 FlashSingleKey 2 100 100 100 1000 75"));
}

TEST(CooldownDisplayTest, NothingIsLitOverADeathOrAShadow) {
    for (const char* effect : {"D", "W", "j"}) {
        const std::string marked = kShown + kStart + say(effect) + "wait 5\n" + say("`@");
        EXPECT_THAT(ledCalls(marked + say("` "), 5.3), IsEmpty()) << effect;
        EXPECT_EQ(cellAfter(marked, 1, 2), kCooldownCell);
        EXPECT_EQ(cellAfter(marked + say("` "), 1, 2), kBlueCell);
    }
}

TEST(CooldownDisplayTest, KeyZeroIsRememberedAndLightsNothing) {
    const std::string bar5 = kShown + kStart + say("}@");
    // The next slot of the bar, without a key as well, is not on cooldown and takes the mark back.
    EXPECT_EQ(dimmedAfter(bar5), "{}");
    EXPECT_EQ(dimmedAfter(kShown + kStart + say("}\\u0002")), R"({"0":1})");
    const std::string back = kShown + kStart + say("}\\u0002") + say("}\\u0000");
    EXPECT_EQ(dimmedAfter(back), "{}");
    EXPECT_THAT(ledCalls(back, 0.1), IsEmpty());
}

TEST(CooldownDisplayTest, KeysOutsideTheBitmapAreLitUnderTheDriversNames) {
    const std::string marked =
        "default \"key101\" 512\ndefault \"key102\" 522\n" + kShown + kStart + say("``");
    EXPECT_THAT(ledCalls(marked, 0.1),
                ElementsAre("0.2 StopEffectsOnKey 65521", "0.2 SetLightingForKeyWithKeyName 65521 30 0 0",
                            "0.2 StopEffectsOnKey 1048562",
                            "0.2 SetLightingForKeyWithKeyName 1048562 30 0 0"));
    const Calls switched = ledCalls(marked + say("1"), 0.3);
    EXPECT_EQ(switched[1], "0.4 SetLightingForKeyWithKeyName 65521 30 0 0");
    EXPECT_EQ(switched[2], "0.4 SetLightingForKeyWithKeyName 65522 40 30 40");
    EXPECT_EQ(ledCalls(marked + say("`\\u0001"), 0.3)[1], "0.45 FlashSingleKey 65521 100 100 100 1000 75");
}

TEST(CooldownDisplayTest, BlinkingIsSuppressedForFiveMessages) {
    const std::string ready = say("`\\u0001");
    // The third report changes nothing and counts all the same.
    const std::string five = kShown + kStart + say("c") + say("`@") + ready + ready + say("`@") + ready;
    EXPECT_EQ(ledCalls(five, 0.1).size(), 6U);
    EXPECT_THAT(ledCalls(five, 0.1), testing::Not(testing::Contains(HasSubstr("Flash"))));
    EXPECT_EQ(stateAfter(five)["supressCooldownBlinkCounter"], 0);
    EXPECT_THAT(ledCalls(five + say("`@") + ready, 1.3), testing::Contains(HasSubstr("Flash")));
}

TEST(CooldownDisplayTest, MessagesWaitWhileKeysBlink) {
    // Two profiles, three keys: the blinks of the first message last from 0.4 to 0.7.
    const std::string script =
        kShownIn1And3 + kStart + say("`p") + "token \"5\"\ntoken \"`\\u0001\"\nwait 2\n";
    const Calls calls = ledCalls(script, 0.35);
    ASSERT_EQ(calls.size(), 12U + 12);
    EXPECT_EQ(calls[0], "0.4 SetLightingForKeyWithKeyName 2 0 0 50");
    EXPECT_EQ(calls[11], "0.7 FlashSingleKey 4 100 100 100 1000 75");
    EXPECT_EQ(calls[12], "1 SetLightingFromBitmap");
}

TEST(CooldownDisplayTest, RefreshesWaitWhileKeysBlink) {
    // Shown anew every 2.8 s from 0.2 on, thus at 3, when three keys begin to blink.
    const std::string script = kShown + kStart + "wait 0.1\nfront \"com.blizzard.worldofwarcraft\"\n" +
                               "wait 2.5\n" + say("`p") + "token \"`\\u0001\"\nwait 0.4\n";
    const Calls calls = ledCalls(script, 2.9);
    ASSERT_EQ(calls.size(), 6U + 12);
    EXPECT_EQ(calls[0], "3 SetLightingForKeyWithKeyName 2 0 0 50");
    EXPECT_EQ(calls[5], "3.15 FlashSingleKey 4 100 100 100 1000 75");
    EXPECT_EQ(calls[6], "3.15 SetLightingFromBitmap"); // by the tick that the blinks began in
}

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

TEST(CooldownDisplayTest, CheckBoxRebuildsTheActiveProfileFromTheCanvas) {
    // Key 3 painted in colour D, key 1 on cooldown.
    const std::string painted = kStart + say("`@") + "action \"setColorsMI:\"\nwait 0\n" +
                                "action \"paintingColorPicker:\" 4\naction \"mouseDown:\" 150 200\n";
    const std::string on = painted + "wait 0.1\naction \"cooldownCheck:\" on\n";
    EXPECT_EQ(cellAfter(on, 1, 2), kCooldownCell);
    EXPECT_EQ(cellAfter(on, 1, 4), "0000ffff");
    const Calls calls = ledCalls(on + "wait 0", 0.25);
    ASSERT_EQ(calls.size(), 12U + 115); // bitmap and the keys outside it, then the canvas
    EXPECT_EQ(calls[0], "0.3 SetLightingFromBitmap");
    EXPECT_EQ(calls[12 + 3], "0.3 SetLightingForKeyWithKeyName 4 100 0 0");

    const auto state = stateAfter(on);
    EXPECT_EQ(state["useSpellCooldowns"][0], true);
    EXPECT_EQ(state["useSpellCooldowns"][1], true);
    EXPECT_EQ(state["canvas"]["usingActionbarCooldowns"], true);
    EXPECT_EQ(dumped(on + "dump defaults")["useActionBarCooldowns1"], true);
    const std::string off = on + "action \"cooldownCheck:\" off\ndump defaults";
    EXPECT_EQ(dumped(off)["useActionBarCooldowns1"], false);
    EXPECT_EQ(cellAfter(off, 1, 2), kBlueCell);
    EXPECT_EQ(stateAfter(kStart + say("4") + "action \"cooldownCheck:\" on\n")["useSpellCooldowns"].dump(),
              "[true,false,false,false,true,false,false,false,false,false]");
}

TEST(CooldownDisplayTest, PreviewShowsTheBoundKeysForASecond) {
    const std::string bound = "default \"key503\" 57\n" + kStart + "action \"revealCooldownColors:\"\n";
    const auto shown = [](const std::string& script) { return stateAfter(script)["canvas"]["dimmedKeys"]; };
    const auto keys = shown(bound);
    EXPECT_EQ(keys.size(), 1U + 12 + 1 + 10);
    for (const char* key : {"0", "2", "13", "57", "59", "68"})
        EXPECT_EQ(keys.value(key, 0), 1) << key;
    EXPECT_EQ(dimmedAfter(bound), "{}");
    EXPECT_EQ(shown(bound + "wait 0.999999999"), keys);
    EXPECT_TRUE(shown(bound + "wait 1").empty());
    // A second press is not allowed to prolong it.
    EXPECT_TRUE(shown(bound + "wait 0.6\naction \"revealCooldownColors:\"\nwait 0.4").empty());
    // The canvas draws them in the cooldown colour where the profile shows cooldowns, and then as before.
    const std::string open = kShown + kStart + "action \"setColorsMI:\"\nwait 0.5\n";
    const Calls calls = ledCalls(open + "action \"revealCooldownColors:\"\nwait 2", 0.1);
    ASSERT_EQ(calls.size(), 2U * 115);
    EXPECT_EQ(calls[1], "0.5 SetLightingForKeyWithKeyName 2 30 0 0");
    EXPECT_EQ(calls[115 + 1], "1.5 SetLightingForKeyWithKeyName 2 0 0 50");
}

/// Blink time, its copy for the blink, and the text, after a script.
Calls blinkTime(const std::string& script) {
    const auto state = stateAfter(script);
    return {state["blinkTime"].dump(), state["blinkPeriod"].dump(),
            dumped(script + "\ndump controls")["blinkTimeTextbox"]["text"]};
}

TEST(CooldownDisplayTest, BlinkTimeIsLimitedAndShownAsADecimal) {
    const auto stored = [](const std::string& value) {
        return blinkTime("default \"blinkTimePref\" " + value + "\nstart");
    };
    const auto typed = [](const std::string& text) {
        return blinkTime("start\naction \"blinkTimeChanged:\" \"" + text + "\"");
    };
    const auto allThree = [](const char* text) { return Calls(3, text); };
    EXPECT_EQ(blinkTime("start"), allThree("1.0"));
    EXPECT_EQ(stored("0"), allThree("1.0"));
    EXPECT_EQ(stored("0.001"), allThree("0.01"));
    EXPECT_EQ(stored("-3.5"), allThree("0.01"));
    EXPECT_EQ(stored("2"), allThree("2.0"));
    EXPECT_EQ(stored("\"2\""), allThree("1.0"));
    EXPECT_EQ(typed("0"), allThree("0.01"));
    EXPECT_EQ(typed("1.5 s"), allThree("1.5"));
    EXPECT_EQ(typed("soon"), allThree("0.01"));
    EXPECT_EQ(typed("-2"), allThree("0.01"));

    const std::string longer = kShown + "start\naction \"blinkTimeChanged:\" \"1.5\"\n";
    EXPECT_EQ(dumped(longer + "dump defaults")["blinkTimePref"].dump(), "1.5");
    EXPECT_EQ(ledCalls(longer + say("`@") + say("` "), 0.3)[1], "0.45 FlashSingleKey 2 100 100 100 1500 75");
    EXPECT_EQ(
        ledCalls(kShown + "start\naction \"blinkTimeChanged:\" \"1e300\"\n" + say("`@") + say("` "), 0.3)[1],
        "0.45 FlashSingleKey 2 100 100 100 2147483647 75");
    EXPECT_THAT(systemLog("default \"blinkTimePref\" 0.001\nstart"), IsEmpty());
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
