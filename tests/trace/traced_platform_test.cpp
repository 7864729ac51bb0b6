#include "trace/traced_led_driver.h"
#include "trace/traced_outlets.h"
#include "trace/traced_services.h"

#include "lighting/led_bitmap.h"

#include <gmock/gmock.h>

namespace glimra::trace {
namespace {

using platform::KeyName;
using testing::ElementsAre;
using testing::Return;
using testing::StrictMock;

/// Lines without time, so that a line reads as what it says.
struct TracedTest : testing::Test {
    static constexpr std::string_view kBefore = R"({"t":0,"kind":)";

    std::vector<std::string> lines;
    TraceWriter writer{[] { return platform::Time{}; },
                       [this](std::string_view line) {
                           line.remove_prefix(kBefore.size());
                           line.remove_suffix(std::string_view("}\n").size());
                           lines.emplace_back(line);
                       }};

    std::string takeLines() {
        std::string all;
        for (const std::string& line : std::exchange(lines, {}))
            all += (all.empty() ? "" : " | ") + line;
        return all;
    }
};

struct MockLedDriver : platform::LedDriver {
    MOCK_METHOD(bool, LogiLedInit, (), (override));
    MOCK_METHOD(bool, LogiLedGetSdkVersion, (int&, int&, int&), (override));
    MOCK_METHOD(bool, LogiLedSetTargetDevice, (int), (override));
    MOCK_METHOD(bool, LogiLedSetLighting, (int, int, int), (override));
    MOCK_METHOD(bool, LogiLedSetLightingFromBitmap, (platform::LedBitmapView), (override));
    MOCK_METHOD(bool, LogiLedSetLightingForKeyWithKeyName, (KeyName, int, int, int), (override));
    MOCK_METHOD(bool, LogiLedFlashSingleKey, (KeyName, int, int, int, int, int), (override));
    MOCK_METHOD(bool, LogiLedPulseSingleKey, (KeyName, int, int, int, int, int, int, int, bool), (override));
    MOCK_METHOD(bool, LogiLedStopEffectsOnKey, (KeyName), (override));
    MOCK_METHOD(bool, LogiLedStopEffects, (), (override));
    MOCK_METHOD(void, LogiLedShutdown, (), (override));
};

struct TracedLedDriverTest : TracedTest {
    StrictMock<MockLedDriver> driver;
    TracedLedDriver traced{driver, writer};

    /// Answers `answer` and sees that the call had its line before.
    auto answers(bool answer) {
        return [this, answer](auto&&...) {
            EXPECT_EQ(lines.size(), 1U);
            return answer;
        };
    }
    /// The line without kind and names of keys: call and arguments.
    std::string takeCall() {
        const std::string line = takeLines();
        return line.substr(line.find("\"call\""));
    }
};

TEST_F(TracedLedDriverTest, WritesEachCallWithItsArgumentsThenPassesItOn) {
    EXPECT_CALL(driver, LogiLedInit).WillOnce(answers(false));
    EXPECT_FALSE(traced.LogiLedInit());
    EXPECT_EQ(takeCall(), R"("call":"LogiLedInit","args":[])");

    EXPECT_CALL(driver, LogiLedSetTargetDevice(7)).WillOnce(answers(true));
    EXPECT_TRUE(traced.LogiLedSetTargetDevice(7));
    EXPECT_EQ(takeCall(), R"("call":"LogiLedSetTargetDevice","args":[7])");

    EXPECT_CALL(driver, LogiLedSetLighting(1, 2, 3)).WillOnce(answers(false));
    EXPECT_FALSE(traced.LogiLedSetLighting(1, 2, 3));
    EXPECT_EQ(takeCall(), R"("call":"LogiLedSetLighting","args":[1,2,3])");

    EXPECT_CALL(driver, LogiLedSetLightingForKeyWithKeyName(0xFFFF1, 1, 2, 3)).WillOnce(answers(true));
    EXPECT_TRUE(traced.LogiLedSetLightingForKeyWithKeyName(0xFFFF1, 1, 2, 3));
    EXPECT_EQ(takeCall(), R"("call":"LogiLedSetLightingForKeyWithKeyName","args":[1048561,1,2,3])");

    EXPECT_CALL(driver, LogiLedFlashSingleKey(28, 1, 2, 3, 4, 5)).WillOnce(answers(true));
    EXPECT_TRUE(traced.LogiLedFlashSingleKey(28, 1, 2, 3, 4, 5));
    EXPECT_EQ(takeCall(), R"("call":"LogiLedFlashSingleKey","args":[28,1,2,3,4,5])");

    EXPECT_CALL(driver, LogiLedPulseSingleKey(28, 1, 2, 3, 4, 5, 6, 7, false)).WillOnce(answers(false));
    EXPECT_FALSE(traced.LogiLedPulseSingleKey(28, 1, 2, 3, 4, 5, 6, 7, false));
    EXPECT_EQ(takeCall(), R"("call":"LogiLedPulseSingleKey","args":[28,1,2,3,4,5,6,7,false])");

    EXPECT_CALL(driver, LogiLedStopEffectsOnKey(28)).WillOnce(answers(true));
    EXPECT_TRUE(traced.LogiLedStopEffectsOnKey(28));
    EXPECT_EQ(takeCall(), R"("call":"LogiLedStopEffectsOnKey","args":[28])");

    EXPECT_CALL(driver, LogiLedStopEffects).WillOnce(answers(false));
    EXPECT_FALSE(traced.LogiLedStopEffects());
    EXPECT_EQ(takeCall(), R"("call":"LogiLedStopEffects","args":[])");

    EXPECT_CALL(driver, LogiLedShutdown).WillOnce([this] { EXPECT_EQ(lines.size(), 1U); });
    traced.LogiLedShutdown();
    EXPECT_EQ(takeCall(), R"("call":"LogiLedShutdown","args":[])");
}

TEST_F(TracedLedDriverTest, PassesVersionAndBitmapThrough) {
    EXPECT_CALL(driver, LogiLedGetSdkVersion).WillOnce([](int& first, int& second, int& third) {
        first = 9;
        second = 1;
        third = 2;
        return true;
    });
    int majorNumber = 0;
    int minorNumber = 0;
    int buildNumber = 0;
    EXPECT_TRUE(traced.LogiLedGetSdkVersion(majorNumber, minorNumber, buildNumber));
    EXPECT_EQ((std::array{majorNumber, minorNumber, buildNumber}), (std::array{9, 1, 2}));
    EXPECT_EQ(takeCall(), R"("call":"LogiLedGetSdkVersion","args":[])");

    const lighting::LedBitmap bitmap = lighting::blankBitmap();
    EXPECT_CALL(driver, LogiLedSetLightingFromBitmap).WillOnce([&](platform::LedBitmapView passed) {
        return passed.data() == bitmap.data();
    });
    EXPECT_TRUE(traced.LogiLedSetLightingFromBitmap(bitmap));
    EXPECT_EQ(takeCall(),
              R"("call":"LogiLedSetLightingFromBitmap","args":[")" + std::string(1008, 'f') + "\"]");
}

struct MockWindowSystem : platform::WindowSystem {
    MOCK_METHOD(void, restoreFrame, (std::string_view), (override));
    MOCK_METHOD(void, saveFrame, (std::string_view), (override));
    MOCK_METHOD(int, runModal, (platform::Window&), (override));
    MOCK_METHOD(void, stopModal, (int), (override));
    MOCK_METHOD(std::optional<std::string>, runSavePanel, (const platform::SavePanel&), (override));
    MOCK_METHOD(std::optional<std::string>, runOpenPanel, (const platform::OpenPanel&), (override));
    MOCK_METHOD(void, runAlert, (const platform::Alert&), (override));
    MOCK_METHOD(void, showSheet, (const platform::Alert&), (override));
    MOCK_METHOD(void, hideColorPanel, (), (override));
    MOCK_METHOD(std::optional<std::string>, documentsFolder, (), (override));
};

struct TracedWindowSystemTest : TracedTest {
    app::Outlets outlets;
    StrictMock<MockWindowSystem> windowSystem;
    TracedWindowSystem traced{windowSystem, writer, windowNames(outlets)};
};

TEST_F(TracedWindowSystemTest, AModalSessionHasItsLineWhenItEnds) {
    traceOutlets(outlets, writer);
    EXPECT_CALL(windowSystem, runModal).WillOnce([](platform::Window& window) {
        window.visible.set(true);
        return 2;
    });
    EXPECT_EQ(traced.runModal(outlets.copyProfileDialog), 2);
    EXPECT_EQ(takeLines(), R"("window","window":"copyProfileDialog","visible":true | )"
                           R"("modal","window":"copyProfileDialog","answer":2)");

    platform::Window stranger;
    EXPECT_CALL(windowSystem, runModal).WillOnce(Return(0));
    traced.runModal(stranger);
    EXPECT_EQ(takeLines(), R"("modal","window":"","answer":0)");
}

TEST_F(TracedWindowSystemTest, PanelsAlertsAndFramesAreWritten) {
    EXPECT_CALL(windowSystem, runOpenPanel).WillOnce(Return("/tmp/in"));
    EXPECT_EQ(traced.runOpenPanel({}), "/tmp/in");
    EXPECT_CALL(windowSystem, runSavePanel).WillOnce(Return(std::nullopt));
    EXPECT_EQ(traced.runSavePanel({}), std::nullopt);
    EXPECT_EQ(takeLines(), R"("panel","panel":"open","path":"/tmp/in" | "panel","panel":"save","path":null)");

    const auto written = [this] { EXPECT_EQ(lines.size(), 1U); };
    const std::string alertLine = R"("alert","title":"A","text":"B","buttons":["OK"])";
    EXPECT_CALL(windowSystem, runAlert).WillOnce(written);
    traced.runAlert({"A", "B", {"OK"}});
    EXPECT_EQ(takeLines(), alertLine);
    EXPECT_CALL(windowSystem, showSheet).WillOnce(written);
    traced.showSheet({"A", "B", {"OK"}});
    EXPECT_EQ(takeLines(), alertLine);

    EXPECT_CALL(windowSystem, restoreFrame(std::string_view("p")));
    EXPECT_CALL(windowSystem, saveFrame(std::string_view("q")));
    traced.restoreFrame("p");
    traced.saveFrame("q");
    EXPECT_EQ(takeLines(), R"("frame","action":"restore","name":"p" | "frame","action":"save","name":"q")");

    EXPECT_CALL(windowSystem, stopModal(3));
    EXPECT_CALL(windowSystem, hideColorPanel);
    EXPECT_CALL(windowSystem, documentsFolder).WillOnce(Return("/home/a"));
    traced.stopModal(3);
    traced.hideColorPanel();
    EXPECT_EQ(traced.documentsFolder(), "/home/a");
    EXPECT_EQ(takeLines(), "");
}

TEST_F(TracedTest, OutletsTellOfWindowsAndOfWritesToTheLog) {
    app::Outlets outlets;
    traceOutlets(outlets, writer);
    outlets.helpWindow.bringToFront();
    outlets.helpWindow.bringToFront();
    outlets.helpWindow.visible.set(false);
    outlets.myTextScroll.insertAtSelection("one\ntwo\n");
    outlets.myTextScroll.selectionStart = 0;
    outlets.myTextScroll.insertAtSelection("zero\n");
    EXPECT_THAT(lines, ElementsAre(R"("window","window":"helpWindow","visible":true)",
                                   R"("window","window":"helpWindow","visible":false)",
                                   R"("log","text":"one\ntwo\n")", R"("log","text":"zero\n")"));
}

/// Records what reaches the platform, and sees that it was written before.
struct RecordingServices final : platform::ChildProcesses,
                                 platform::Sounds,
                                 platform::SystemLog,
                                 platform::ProcessActivity,
                                 platform::Workspace {
    explicit RecordingServices(const std::vector<std::string>& writtenLines) : lines(writtenLines) {}

    void note(std::string call) {
        calls.push_back(std::move(call));
        EXPECT_EQ(lines.size(), calls.size());
    }
    void start(const std::string& path, const std::vector<std::string>& arguments) override {
        note(path + ' ' + arguments.at(0));
    }
    void play(std::string_view name) override { note(std::string(name)); }
    void write(std::string_view line) override { note(std::string(line)); }
    void begin(std::string_view reason) override { note("begin " + std::string(reason)); }
    void end(std::string_view reason) override { note("end " + std::string(reason)); }
    std::optional<platform::RunningApplication> frontmostApplication() const override {
        return platform::RunningApplication{"front"};
    }
    void observeSleep(std::function<void()> aboutToSleep, std::function<void()> screensDidWake) override {
        aboutToSleep();
        screensDidWake();
    }
    bool openUrl(const std::string& address) override {
        note(address);
        return address == "good";
    }

    const std::vector<std::string>& lines;
    std::vector<std::string> calls;
};

TEST_F(TracedTest, ServicesAreWrittenThenPassedOn) {
    RecordingServices services(lines);
    TracedChildProcesses(services, writer).start("/bin/p", {"a b"});
    TracedSounds(services, writer).play("Tink");
    TracedSystemLog(services, writer).write("said");
    TracedProcessActivity activity(services, writer);
    activity.begin("r");
    activity.end("r");
    TracedWorkspace workspace(services, writer);
    EXPECT_TRUE(workspace.openUrl("good"));
    EXPECT_FALSE(workspace.openUrl("bad"));
    EXPECT_THAT(services.calls, ElementsAre("/bin/p a b", "Tink", "said", "begin r", "end r", "good", "bad"));
    EXPECT_THAT(lines,
                ElementsAre(R"("process","path":"/bin/p","args":["a b"])", R"("sound","name":"Tink")",
                            R"("system-log","text":"said")", R"("activity","action":"begin","reason":"r")",
                            R"("activity","action":"end","reason":"r")", R"("url","url":"good")",
                            R"("url","url":"bad")"));

    EXPECT_EQ(workspace.frontmostApplication(), platform::RunningApplication{"front"});
    std::string told;
    workspace.observeSleep([&] { told += 's'; }, [&] { told += 'w'; });
    EXPECT_EQ(told, "sw");
    EXPECT_EQ(lines.size(), services.calls.size());
}

} // namespace
} // namespace glimra::trace
