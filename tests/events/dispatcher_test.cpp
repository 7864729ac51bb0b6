#include "support/events_machine.h"
#include "support/replay_text.h"

#include "simulated/run_loop.h"

#include <gmock/gmock.h>

namespace glimra::events {
namespace {

using test::ledCalls;
using test::replay;
using test::say;
using test::stateAfter;
using testing::ElementsAre;
using testing::IsEmpty;
using Calls = std::vector<std::string>;

const std::string kStart = "start\n";
const std::string kDebug = "start\naction \"debugMenuItem:\"\n";

Calls logLines(const std::string& script, std::size_t first) {
    Calls texts;
    for (const auto& line : replay(script, {trace::TraceKind::Log}))
        texts.push_back(line["text"]);
    return {texts.begin() + static_cast<std::ptrdiff_t>(std::min(first, texts.size())), texts.end()};
}

/// A call for each key of the combat pulse, in its order.
Calls onCombatKeys(const std::string& before, const std::string& after) {
    Calls calls{before.substr(0, before.find(' ')) + " SetTargetDevice 4"};
    for (const int key : {0x2A, 0x1D, 0x15B, 0x38, 0x39, 0x138, 0x15C, 0x15D, 0x11D, 0x36, 0x148, 0x14B,
                          0x150, 0x14D, 0xFFFF1, 0xFFFF2, 0x3A, 0x1C})
        calls.push_back(before + std::to_string(key) + after);
    return calls;
}

Calls redPulse(const std::string& moment, int period) {
    return onCombatKeys(moment + " PulseSingleKey ", " 100 0 0 25 0 0 " + std::to_string(period) + " true");
}
Calls whitePulse(const std::string& moment) {
    return onCombatKeys(moment + " PulseSingleKey ", " 100 100 100 25 25 25 200 true");
}

/// A profile with the factory colours comes to the keyboard.
Calls factoryProfile(const std::string& moment) {
    Calls calls{moment + " SetLightingFromBitmap"};
    for (const int key :
         {0xFFF1, 0xFFF2, 0xFFF3, 0xFFF4, 0xFFF5, 0xFFF6, 0xFFF7, 0xFFF8, 0xFFF9, 0xFFFF1, 0xFFFF2})
        calls.push_back(moment + " SetLightingForKeyWithKeyName " + std::to_string(key) + " 40 30 40");
    return calls;
}

Calls operator+(Calls calls, const Calls& more) {
    calls.insert(calls.end(), more.begin(), more.end());
    return calls;
}

/// Active profile, and the one to return to.
std::pair<int, int> profilesAfter(const std::string& script) {
    const auto state = stateAfter(script);
    return {state["activeColorProfile"], state["chatReturnColorProfile"]};
}

TEST(DispatcherTest, EveryCodeOfTheTableDoesSomethingAndTheOthersAreReported) {
    const std::string table = "R-CODUGgSsMmaAHrTFfNnhJWVwxyzpjklKLB123456789EeIi";
    const std::string dark = "Eeiwxyz"; // light nothing as long as no option and no fight asks for it
    std::string reported;
    std::string expectedReported;
    for (char code = ' '; code <= '~'; ++code) {
        if (std::string("c`[]{}").find(code) != std::string::npos)
            continue; // part of the queue's own grammar
        const std::string quoted = nlohmann::json(std::string(1, code)).dump();
        const std::string script = kDebug + say(quoted.substr(1, quoted.size() - 2)) + "wait 5\n";
        if (logLines(script, 0).back().starts_with("Ignored message "))
            reported += code;
        const bool isKnown = table.find(code) != std::string::npos;
        if (!isKnown)
            expectedReported += code;
        EXPECT_EQ(ledCalls(script, 0.1).empty(), !isKnown || dark.find(code) != std::string::npos) << code;
    }
    EXPECT_EQ(reported, expectedReported);
}

TEST(DispatcherTest, DebugModeTracesMessages) {
    EXPECT_THAT(logLines(kDebug + say("p") + say("Q") + say("\\u0000") + say("`\\u0001") + say("\\u00e9"), 5),
                ElementsAre("evaluating message p (70)\n", "evaluating message Q (51)\n",
                            "Ignored message Q (51) from buffer\n", "ignoring message NULL (00)\n",
                            "evaluating message `\x01 (6001)\n", "evaluating message \u00e9 (c3a9)\n",
                            "Ignored message \u00e9 (c3a9) from buffer\n"));
    EXPECT_THAT(logLines(kStart + say("p") + say("Q") + say("\\u0000"), 3), IsEmpty());
}

TEST(DispatcherTest, CombatPulsesUntilItsEndAtTheSpeedLastSet) {
    EXPECT_EQ(ledCalls(kStart + say("C"), 0.1), redPulse("0.2", 400));
    // A speed without a fight is kept for the next one.
    const std::string fast = kStart + say("x") + say("C");
    EXPECT_EQ(ledCalls(fast, 0.1), redPulse("0.4", 300));
    EXPECT_EQ(ledCalls(fast + say("z") + say("y") + say("w"), 0.5),
              redPulse("0.6", 100) + redPulse("0.8", 200) + redPulse("1", 400));
    EXPECT_EQ(ledCalls(fast + say("O"), 0.5), onCombatKeys("0.6 StopEffectsOnKey ", ""));
    EXPECT_EQ(ledCalls(fast + say("O") + say("z"), 0.7), Calls{});
}

TEST(DispatcherTest, SomeCodesBringTheNextRefreshForward) {
    const auto countdown = [](const std::string& script) {
        return stateAfter(kStart + script)["WoWisInTheForeground"].get<int>();
    };
    EXPECT_EQ(countdown(say("f")), 2);
    EXPECT_EQ(countdown(say("f") + say("O")), 0);
    EXPECT_EQ(countdown(say("f") + say("U")), 1);
    EXPECT_EQ(countdown(say("U") + say("j") + say("K")), 1); // its flash is not that of the code f
}

TEST(DispatcherTest, FlagsTellWhatTheKeyboardShows) {
    const auto flags = [](const std::string& script) {
        const auto state = stateAfter(kStart + script);
        std::string set;
        for (const char* flag : {"combatAnimationPlaying", "deadAnimationPlaying", "shadowAnimationPlaying"})
            set += state[flag].get<bool>() ? flag[0] : '-';
        return set;
    };
    EXPECT_EQ(flags(say("C")), "c--");
    EXPECT_EQ(flags(say("C") + say("O")), "---");
    EXPECT_EQ(flags(say("D")), "-d-");
    EXPECT_EQ(flags(say("D") + say("U")), "---");
    EXPECT_EQ(flags(say("W")), "-d-");
    EXPECT_EQ(flags(say("W") + "wait 2\n" + say("V")), "---");
    for (const char* shadow : {"j", "k", "l"})
        EXPECT_EQ(flags(say(shadow)), "--s");
    EXPECT_EQ(flags(say("k") + say("K")), "---");
}

TEST(DispatcherTest, ProfileCodesSwitch) {
    EXPECT_EQ(ledCalls(kStart + say("3"), 0.1), factoryProfile("0.2"));
    EXPECT_EQ(ledCalls("default \"singleColorMode\" true\n" + kStart + say("p"), 0.1),
              (factoryProfile("0.2") + Calls{"0.2 SetTargetDevice 4", "0.2 SetLighting 0 100 100"}));
    EXPECT_EQ(profilesAfter(kStart + say("5")), std::pair(5, 5));
    EXPECT_EQ(profilesAfter(kStart + say("p")), std::pair(2, 1));
    EXPECT_EQ(profilesAfter(kStart + say("p") + say("p")), std::pair(1, 1));
    EXPECT_EQ(profilesAfter(kStart + say("9") + say("p")), std::pair(2, 9));
}

TEST(DispatcherTest, ChatBoxTakesProfile2AndGivesTheOtherBack) {
    const std::string chat = "default \"autoToggleProfile\" true\n" + kStart + say("3");
    EXPECT_EQ(profilesAfter(chat + say("E")), std::pair(2, 3));
    // It remembers what is on the keyboard, which need not be the profile chosen last.
    EXPECT_EQ(profilesAfter(chat + say("8") + say("p") + say("E")), std::pair(2, 1));
    EXPECT_EQ(profilesAfter(chat + say("8") + say("p") + say("E") + say("e")), std::pair(1, 1));
    EXPECT_EQ(profilesAfter(chat + say("E") + say("e")), std::pair(3, 3));
    EXPECT_EQ(ledCalls(chat + say("E") + say("e"), 0.3), factoryProfile("0.4") + factoryProfile("0.6"));
    EXPECT_EQ(profilesAfter(chat + say("4") + say("p") + say("e")), std::pair(4, 4));
    EXPECT_EQ(profilesAfter(kStart + say("3") + say("E")), std::pair(3, 3));
    EXPECT_EQ(profilesAfter(chat + say("D") + say("E")), std::pair(3, 3));
    EXPECT_EQ(profilesAfter(chat + say("j") + say("E")), std::pair(3, 3));
    EXPECT_THAT(ledCalls(chat + say("j") + say("E") + say("e"), 0.5), IsEmpty());
}

TEST(DispatcherTest, ChatBoxRecoloursAFightWhereTheUserWantsIt) {
    const std::string fight = "default \"combatChatWarning\" true\n" + kStart + say("y") + say("C");
    EXPECT_EQ(ledCalls(fight + say("E") + say("e"), 0.5), whitePulse("0.6") + redPulse("0.8", 200));
    EXPECT_THAT(ledCalls(kStart + say("C") + say("E") + say("e"), 0.3), IsEmpty());
    EXPECT_EQ(ledCalls("default \"autoToggleProfile\" true\n" + fight + say("E"), 0.5),
              whitePulse("0.6") + factoryProfile("0.6"));

    // A dead player who still fights: recoloured, but the profile stays.
    simulated::SimulatedRunLoop runLoop;
    tests::FakeDriver driver;
    tests::EventsMachine machine(runLoop, driver);
    machine.options = {false, true, true};
    machine.effects.combatAnimationPlaying = true;
    machine.effects.deadAnimationPlaying = true;
    machine.profile = {3, 3, false};
    machine.dispatcher.evaluateMessage("E");
    EXPECT_EQ(driver.take().size(), 1U + 18);
    EXPECT_EQ(machine.profile.activeColorProfile, 3);
    machine.effects.shadowAnimationPlaying = true;
    machine.dispatcher.evaluateMessage("E");
    EXPECT_THAT(driver.take(), IsEmpty());
}

TEST(DispatcherTest, WhisperFlashesEnterOnce) {
    simulated::SimulatedRunLoop runLoop;
    tests::FakeDriver driver;
    tests::EventsMachine machine(runLoop, driver);
    for (const char* message : {"I", "I", "i", "I"})
        machine.dispatcher.evaluateMessage(message);
    EXPECT_THAT(driver.take(), ElementsAre("FlashSingleKey 28 100 0 100 0 500"));
    EXPECT_TRUE(machine.effects.whisperLightActive);
}

TEST(DispatcherTest, ResetClearsWhatIsUnderWayAndLeavesTheRest) {
    const std::string before = "default \"useActionBarCooldowns5\" true\n" + kStart + say("z") + say("5") +
                               say("`@") + say("c") + say("I") + "token \"A\"\ntoken \"B\"\nwait 0.15\n";
    const std::string reset = "action \"resetClicked:\"\n";
    const auto state = stateAfter(before + reset);
    EXPECT_EQ(state["messageQueue"], "");
    EXPECT_EQ(state["currentMessage"], "");
    EXPECT_EQ(state["activeColorProfile"], 1);
    EXPECT_EQ(state["useSpellCooldowns"][0], false);
    EXPECT_EQ(state["chatReturnColorProfile"], 5);
    EXPECT_EQ(state["whisperLightActive"], true);
    EXPECT_EQ(state["combatPulseMs"], 100);
    EXPECT_EQ(state["dimmedKeys"].dump(), R"({"2":1})");
    EXPECT_EQ(state["supressCooldownBlinkCounter"], 5);
    EXPECT_EQ(state["useSpellCooldowns"][5], true);

    const Calls calls = ledCalls(before + reset, 1.1);
    const std::size_t stops = 104;
    ASSERT_EQ(calls.size(), 1 + stops + factoryProfile("1.15").size());
    EXPECT_EQ(calls[0], "1.15 SetTargetDevice 7");
    EXPECT_TRUE(std::all_of(calls.begin() + 1, calls.begin() + 1 + stops, [](const std::string& call) {
        return call.starts_with("1.15 StopEffectsOnKey ");
    }));
    EXPECT_EQ(Calls(calls.begin() + 1 + stops, calls.end()), factoryProfile("1.15"));
    // Of a single colour the whole devices go dark too, and colour A comes back.
    const Calls single = ledCalls("default \"singleColorMode\" true\n" + kStart + say("-"), 0.1);
    EXPECT_EQ(single[1], "0.2 StopEffects");
    EXPECT_EQ(single.back(), "0.2 SetLighting 0 100 100");
}

TEST(DispatcherTest, ResetAsksForConfirmationAndIsLoggedUnlessSilent) {
    const std::string line = "Reset the message queue, color profile, and animated keys.\n";
    EXPECT_THAT(logLines(kStart + say("C") + say("R"), 3), ElementsAre(line));
    EXPECT_THAT(logLines(kStart + say("-"), 3), IsEmpty());
    EXPECT_THAT(logLines(kStart + "action \"resetLightsMI:\"", 3), ElementsAre(line));
    for (const char* code : {"R", "-"}) {
        const auto state = stateAfter("display 64 64 1\n" + kStart + "action \"calibrateMI:\"\n" + say(code));
        EXPECT_EQ(state["confirmCalibrate"], true);
    }
}

} // namespace
} // namespace glimra::events
