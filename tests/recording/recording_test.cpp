#include "recording/recorded_platform.h"

#include "app/app_delegate.h"
#include "platform/stored_values.h"
#include "recording/script_text.h"
#include "simulated/simulated_platform.h"
#include "support/fake_driver.h"
#include "support/replay_text.h"

#include <gmock/gmock.h>

#include <clocale>
#include <cmath>

namespace glimra::recording {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// An application on a simulated machine, which is recorded.
class RecordingTest : public testing::Test {
protected:
    RecordingTest()
        : m_recorder([this] { return m_machine.runLoop.now(); },
                     [this](std::string_view lines) {
                         m_script += lines;
                         return std::string();
                     },
                     [](const std::string&) {}),
          m_recorded(m_machine.platform(m_driver, {}), m_recorder),
          m_delegate(m_recorded.platform()) {
        m_recorded.follow(m_delegate.outlets());
        m_machine.application.setDelegate([this] { return m_delegate.applicationShouldTerminate(); },
                                          [this] { m_delegate.applicationWillTerminate(); });
    }

    void launch() {
        // Where that language is installed; a desktop program takes the user's.
        std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
        m_recorder.launch(m_machine.userDefaults, m_machine.screen.scale());
        std::setlocale(LC_NUMERIC, "C");
        m_machine.screen.setStripGeometry(2, 80);
        m_delegate.applicationDidFinishLaunching();
    }
    void wait(platform::Duration duration) { ASSERT_TRUE(m_machine.runLoop.runUntil(now() + duration)); }
    platform::Time now() const { return m_machine.runLoop.now(); }
    void show(char character) {
        const screenlink::TokenFrames frames = screenlink::encodeToken({std::nullopt, character});
        for (const screenlink::StripFrame& frame : {frames.announce, frames.confirm}) {
            m_machine.screen.paintStrip(frame);
            wait(100ms);
        }
        m_machine.screen.paintStrip({});
    }
    void act(std::string_view selector, const app::ActionArgument& argument = {}) {
        const app::ActionRow& action = *app::findAction(selector);
        m_recorder.beginAction(action, argument);
        app::sendAction(m_delegate, action, argument);
        m_recorder.endAction();
    }
    void quit() {
        m_recorder.quit();
        m_machine.application.terminate();
        static_cast<void>(m_machine.runLoop.runUntil(now() + 1s));
    }
    /// What the keyboard was told, as `tests::ledCalls` tells it of the replayed script, without times.
    std::vector<std::string> replayedCalls() const {
        std::vector<std::string> calls = tests::ledCalls(m_script, 0.0);
        for (std::string& call : calls)
            call.erase(0, call.find(' ') + 1);
        return calls;
    }

    simulated::SimulatedPlatform m_machine{5489};
    tests::FakeDriver m_driver;
    std::string m_script;
    ScriptRecorder m_recorder;
    RecordedPlatform m_recorded;
    app::AppDelegate m_delegate;
};

TEST_F(RecordingTest, ReplayedTheKeyboardIsToldTheSame) {
    m_machine.userDefaults.set("combatChatWarning", true);
    m_machine.userDefaults.set("endStaleEffects", true);
    m_machine.userDefaults.set("scanWidth", 80.0);
    m_machine.userDefaults.set("scanOffset", std::int64_t{2});
    m_machine.userDefaults.set("WowAppName", std::string("Secret"));
    launch();
    wait(500ms);
    show('C');
    act("endStaleEffectsMI:", false);
    wait(40s);
    EXPECT_TRUE(m_delegate.state().effects.combatAnimationPlaying);
    act("endStaleEffectsMI:", true);
    wait(1s);
    EXPECT_FALSE(m_delegate.state().effects.combatAnimationPlaying);
    m_machine.workspace.setFrontmostApplication({{"com.blizzard.worldofwarcraft"}});
    wait(530ms);
    show('C');
    wait(1s);
    show('w');
    act("testLightsMI:");
    wait(3s);
    m_machine.workspace.setFrontmostApplication({{"com.example.diary"}});
    wait(900ms);
    m_machine.workspace.sleep();
    wait(200ms);
    m_machine.workspace.wake();
    act("singleColorModeCheck:", true);
    show('O');
    wait(700ms);
    quit();

    EXPECT_THAT(m_script, AllOf(HasSubstr("strip-geometry 2 80.0\n"),
                                HasSubstr("front \"com.blizzard.worldofwarcraft\"\n"),
                                HasSubstr("front \"\"\n"), HasSubstr("sleep\n"), HasSubstr("wake\n"),
                                Not(HasSubstr("Secret")), Not(HasSubstr("diary"))));
    EXPECT_GT(m_driver.calls.size(), 40U);
    EXPECT_EQ(replayedCalls(), m_driver.calls);
}

TEST_F(RecordingTest, ReplayedTheSameIsStored) {
    launch();
    wait(100ms);
    act("setColorsBtn:");
    wait(100ms);
    act("paintingColorPicker:", app::RadioTag{3});
    act("mouseDown:", app::CanvasPoint{100, 160});
    act("mouseDragged:", app::CanvasPoint{130, 160});
    act("mouseDown:", app::CanvasPoint{165, 160});
    act("colorWellDropped:", app::WellColor{3, {1, 0, 0}});
    for (const char* const step : {"undo:", "undo:", "undo:", "redo:"})
        act(step);
    // While the game shows another profile.
    show('5');
    wait(1s);
    act("showProfile:", app::ButtonTag{1});
    m_machine.windowSystem.queueAnswer({1, {}});
    act("settleEdits:");
    quit();
    m_script.replace(m_script.find("quit\n"), std::string::npos, "dump defaults");
    const auto replayed = tests::replay(m_script, {trace::TraceKind::Dump}).back()["value"];
    std::vector<int> map;
    const auto stored = m_machine.userDefaults.get("savedKeyToColorMap1").value();
    for (const platform::Number& slot : std::get<platform::NumberArray>(stored))
        map.push_back(static_cast<int>(*platform::toInteger(slot)));
    EXPECT_EQ(map[0x10], 6);
    EXPECT_EQ(map[0x12], 3);
    EXPECT_EQ(replayed["savedKeyToColorMap1"].get<std::vector<int>>(), map);
    EXPECT_FALSE(replayed.contains("savedKeyToColorMap5"));
}

TEST_F(RecordingTest, AModalSessionsAnswerComesBeforeItsAction) {
    launch();
    wait(500ms);
    act("setColorsBtn:");
    // A frame comes while the user is choosing, and the dialog's own buttons send something.
    const auto choose = [this] {
        m_delegate.outlets().fromProfileMenu.selected.set(3);
        m_recorder.frame(std::nullopt, now());
        act("copyProfileSameSame:");
        m_delegate.outlets().toProfileMenu.selected.set(5);
    };
    m_machine.windowSystem.queueAnswer({1, {choose}});
    act("profileSelectPopup:", app::ItemIndex{10});
    quit();
    EXPECT_THAT(m_script, HasSubstr("action \"setColorsBtn:\"\n"
                                    "answer 1 fromProfileMenu=3 toProfileMenu=5\n"
                                    "action \"profileSelectPopup:\" 10\n"
                                    "strip off\nquit\n"));
}

TEST(ScriptText, HoldsNoWordsOfTheUsers) {
    EXPECT_EQ(actionLine(*app::findAction("blinkTimeChanged:"), app::EnteredText{"2.5 my secret"}),
              "action \"blinkTimeChanged:\" \"2.5\"");
    EXPECT_EQ(settingLine("a \"b\"", std::string("secret")), std::nullopt);
    EXPECT_EQ(settingLine("a \"b\"", platform::NumberArray{std::int64_t{1}, 2.5, std::nan("")}),
              "default \"a \\\"b\\\"\" [1,2.5,-1]")
        << "an element that is no number counts as no slot";
    EXPECT_EQ(waitLine(1'000'050'000ns), "wait 1.000050");
}

TEST(ScriptRecorder, EndsAtItsLimitAndWhenItCannotWrite) {
    // What waits for the end of a session has a limit as well.
    for (const bool isModal : {true, false}) {
        std::size_t left = 500;
        std::vector<std::string> ends;
        const auto write = [&](std::string_view lines) {
            const bool fits = lines.size() <= left;
            left -= fits ? lines.size() : 0;
            return std::string(fits ? "" : "is full");
        };
        const auto ended = [&](std::string reason) { ends.push_back(std::move(reason)); };
        ScriptRecorder recorder([] { return 0s; }, write, ended, 500);
        recorder.launch(simulated::InMemoryDefaults(), 1.0);
        if (isModal)
            recorder.beginModal();
        for (int i = 0; i < 100; ++i)
            recorder.sleep();
        EXPECT_THAT(ends, ElementsAre("The recording is full and ends here."));
        EXPECT_EQ(left < 10, !isModal);
    }
}

} // namespace
} // namespace glimra::recording
