#include "app/launcher.h"
#include "desktop/services/linux_commands.h"
#include "desktop/services/theme_sounds.h"
#include "platform/locked.h"

#include "support/script_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace glimra::desktop {
namespace {

using glimra::tests::eventually;
using glimra::tests::millisecondsOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string kSay = "/usr/bin/say";
const std::string kScripting = "/usr/bin/osascript";

class CommandsTest : public ::testing::Test {
protected:
    CommandsTest() {
        folder.addScript("sentinel", "sleep 0.2; echo > \"$OUT/sentinel.txt\"");
        folder.addScript("record",
                         "printf '%s\\n' \"$@\" > \"$OUT/part\" && mv \"$OUT/part\" \"$OUT/record.txt\"");
    }

    void startCommands() {
        voice = std::make_unique<BackgroundWorker>(2);
        commands = std::make_unique<LinuxCommands>(
            *voice,
            [this](const std::string& name) {
                raised.push_back(name);
                return hasWindow;
            },
            [this](const std::string& line) { m_told.with([&](auto& lines) { lines.push_back(line); }); });
    }
    void activate(const std::string& name) { commands->start(kScripting, {app::activationScript(name)}); }
    /// What "record" has been started with, if anything, once all that was asked for must have been started.
    std::string recorded() {
        commands->start(folder.path("sentinel"), {});
        EXPECT_TRUE(eventually([&] { return !folder.content("sentinel.txt").empty(); }));
        return folder.content("record.txt");
    }
    std::string recordedSoon() {
        EXPECT_TRUE(eventually([&] { return !folder.content("record.txt").empty(); }));
        return folder.content("record.txt");
    }

    std::vector<std::string> told() const { return m_told.copy(); }

    glimra::tests::ScriptFolder folder;
    platform::Locked<std::vector<std::string>> m_told;
    std::vector<std::string> raised;
    bool hasWindow = false;
    std::unique_ptr<BackgroundWorker> voice;
    std::unique_ptr<LinuxCommands> commands;
};

TEST_F(CommandsTest, SpeaksAnyTextAsText) {
    folder.addScript("spd-say", "exec record \"$@\"");
    startCommands();
    commands->start(kSay, {"--version; $(x)"});
    EXPECT_EQ(recordedSoon(), "--\n--version; $(x)\n");
    EXPECT_THAT(raised, IsEmpty());
}

TEST_F(CommandsTest, NobodyWaitsForAVoiceThatHangs) {
    folder.addScript("spd-say", "echo \"$@\" >> \"$OUT/spoken\"\nexec sleep 100");
    startCommands();
    EXPECT_LT(millisecondsOf([&] {
                  for (int i = 0; i < 20; ++i)
                      commands->start(kSay, {std::to_string(i)});
              }),
              200);
    EXPECT_TRUE(eventually([&] { return !folder.content("spoken").empty(); }));
    // Programs are started all the same.
    commands->start(folder.path("record"), {"started"});
    EXPECT_EQ(recordedSoon(), "started\n");
    EXPECT_LT(millisecondsOf([&] {
                  commands.reset();
                  voice.reset();
              }),
              1000);
}

TEST_F(CommandsTest, RaisesAWindowBeforeItStartsAnything) {
    folder.addFile("first/applications/game.desktop",
                   "[Desktop Entry]\nType=Application\nName=Game\nExec=record started\n");
    startCommands();
    hasWindow = true;
    activate("Game");
    EXPECT_EQ(recorded(), "");
    hasWindow = false;
    activate("Game");
    EXPECT_EQ(recordedSoon(), "started\n");
    EXPECT_THAT(raised, ElementsAre("Game", "Game"));
}

TEST_F(CommandsTest, UnderstandsEveryNameThatIsEscaped) {
    const std::string hostile = R"(" to activate\" & (do shell script "x") \\)";
    folder.addFile("home/applications/game.desktop", "[Desktop Entry]\nType=Application\nName="
                                                     R"(" to activate\\" & (do shell script "x") \\\\)"
                                                     "\nExec=record started\n");
    startCommands();
    activate(hostile);
    EXPECT_THAT(raised, ElementsAre(hostile));
    EXPECT_EQ(recordedSoon(), "started\n");
}

TEST_F(CommandsTest, SaysWhenThereIsNothingToLaunch) {
    startCommands();
    activate("");
    activate("No such application");
    EXPECT_EQ(recorded(), "");
    EXPECT_THAT(raised, ElementsAre("No such application"));
    EXPECT_THAT(told(), ElementsAre(HasSubstr("no name"), HasSubstr("\"No such application\"")));
}

TEST_F(CommandsTest, IgnoresWhatIsNoActivation) {
    startCommands();
    for (const char* const argument :
         {"", "-e tell application \"", "-e tell application \"Game\" to quit",
          "-e tell application \" to activate", "-e tell application \"Ga\"me\" to activate",
          "-e tell application \"Game\\\" to activate", "-e tell application \"Game\" to activate "})
        commands->start(kScripting, {argument});
    EXPECT_EQ(recorded(), "");
    EXPECT_THAT(raised, IsEmpty());
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(CommandsTest, StartsAnyOtherPathAndSaysWhenItCannot) {
    startCommands();
    commands->start(folder.path("record"), {"a b", "", "*"});
    EXPECT_EQ(recordedSoon(), "a b\n\n*\n");
    commands->start(folder.path("nothing"), {});
    EXPECT_TRUE(eventually([&] { return !told().empty(); }));
    EXPECT_THAT(told(), ElementsAre(HasSubstr(folder.path("nothing"))));
}

class ThemeSoundsTest : public ::testing::Test {
protected:
    /// Plays three times, with everything done when it returns.
    void playThrice() {
        BackgroundWorker worker(8);
        ThemeSounds sounds(worker);
        for (int i = 0; i < 3; ++i)
            sounds.play("Tink");
        sounds.play("Another");
        std::atomic<bool> isDone = false;
        worker.post([&](const std::stop_token&) { isDone = true; });
        EXPECT_TRUE(eventually([&] { return isDone.load(); }));
    }

    glimra::tests::ScriptFolder folder;
};

TEST_F(ThemeSoundsTest, PlaysTheThemesSoundWithThePlayerThatIsThere) {
    folder.addFile("second/sounds/freedesktop/stereo/bell.oga", "sound");
    folder.addScript("paplay", "echo \"$@\" >> \"$OUT/played\"");
    playThrice();
    const std::string line = folder.path("second/sounds/freedesktop/stereo/bell.oga") + "\n";
    EXPECT_EQ(folder.content("played"), line + line + line);
}

TEST_F(ThemeSoundsTest, GivesUpAPlayerThatFails) {
    folder.addScript("canberra-gtk-play", "echo \"$@\" >> \"$OUT/played\"\nexit 1");
    playThrice();
    EXPECT_EQ(folder.content("played"), "-i bell\n");
}

} // namespace
} // namespace glimra::desktop
