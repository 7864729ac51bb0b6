#include "desktop/services/application_finder.h"
#include "desktop/services/desktop_entry.h"

#include "support/script_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace glimra::desktop {
namespace {

using ::testing::ElementsAre;
using ::testing::Optional;

using Words = std::vector<std::string>;

/// The words of an Exec value as it stands in a file.
std::optional<Words> wordsOf(const std::string& exec) {
    const auto entry =
        parseDesktopEntry("[Desktop Entry]\nType=Application\nName=N %f\nIcon=i c\nExec=" + exec + "\n");
    return entry ? execArguments(*entry, "/a b.desktop") : std::nullopt;
}

TEST(ExecLineTest, FollowsTheStandardsQuotingRules) {
    EXPECT_THAT(wordsOf(R"(game "an argument" plain)"),
                Optional(ElementsAre("game", "an argument", "plain")));
    EXPECT_THAT(wordsOf(R"(game "\\"q\\" \\`x\\` \\$HOME \\\\ \\n" "")"),
                Optional(ElementsAre("game", R"("q" `x` $HOME \ \n)", "")));
    EXPECT_THAT(wordsOf("game\\sa\\tb   c"), Optional(ElementsAre("game", "a", "b", "c")));
}

TEST(ExecLineTest, ExpandsFieldCodesWithoutFiles) {
    EXPECT_THAT(wordsOf("game %U --name=%c %% %k"),
                Optional(ElementsAre("game", "--name=N %f", "%", "/a b.desktop")));
    EXPECT_THAT(wordsOf("game %i %d%n last"), Optional(ElementsAre("game", "--icon", "i c", "last")));
}

TEST(ExecLineTest, UnderstandsTheEntriesThatGamesComeWith) {
    EXPECT_THAT(wordsOf("env LUTRIS_SKIP_INIT=1 lutris lutris:rungameid/1"),
                Optional(ElementsAre("env", "LUTRIS_SKIP_INIT=1", "lutris", "lutris:rungameid/1")));
    EXPECT_THAT(
        wordsOf(R"(flatpak run --command=bottles-cli com.usebottles.bottles run -p 'The Game' -- %u)"),
        Optional(ElementsAre("flatpak", "run", "--command=bottles-cli", "com.usebottles.bottles", "run", "-p",
                             "The Game", "--")));
    EXPECT_THAT(wordsOf(R"(env WINEPREFIX="/home/u/.wine dir" wine C:\\\\users\\\\Start\\ Menu\\\\Game.lnk)"),
                Optional(ElementsAre("env", "WINEPREFIX=/home/u/.wine dir", "wine",
                                     R"(C:\users\Start Menu\Game.lnk)")));
}

TEST(ExecLineTest, RefusesWhatIsBroken) {
    for (const char* const exec : {"", "   ", "game \"open", "game 'open", "game \\\\", "game %", "game %z",
                                   "\"\" game", "%f", "game \"\\\\\""})
        EXPECT_EQ(wordsOf(exec), std::nullopt) << exec;
}

TEST(ExecLineTest, RefusesToGrowWithoutBound) {
    std::string exec = "game ";
    for (int i = 0; i < 50'000; ++i)
        exec += "%c";
    DesktopEntry entry;
    entry.name = std::string(50'000, 'x');
    entry.exec = exec;
    EXPECT_EQ(execArguments(entry, ""), std::nullopt);
}

TEST(DesktopEntryTest, ReadsItsOwnGroupAlone) {
    const auto entry =
        parseDesktopEntry("# comment\r\n[Desktop Entry]\r\nType = Application\r\nName=A\\sB\r\n"
                          "Name[de]=C\r\nnonsense\r\n=\r\nExec=game\r\nExec\r\n#Exec=other\r\nHidden=true\r\n"
                          "[Desktop Action x]\r\nName=D\r\nExec=other\r\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, "A B");
    EXPECT_EQ(entry->exec, "game");
    EXPECT_TRUE(entry->hidden);
    EXPECT_FALSE(entry->noDisplay);
}

TEST(DesktopEntryTest, TakesNothingForAnApplicationThatIsNone) {
    for (const std::string file : {"", "[Desktop Entry]", "Type=Application\nName=A\n",
                                   "[Other]\nType=Application\n", "[Desktop Entry]\nType=Link\n",
                                   "[Desktop Entry]\n[Desktop Entry]\nType=Application\n", "\xFF\xFE[[[="})
        EXPECT_EQ(parseDesktopEntry(file), std::nullopt) << file;
    EXPECT_EQ(parseDesktopEntry(std::string("[Desktop Entry]\nType=Application\nName=A\0B\n", 42)),
              std::nullopt);
}

class ApplicationFinderTest : public ::testing::Test {
protected:
    ApplicationFinderTest() {
        for (const char* const program : {"one", "two", "three"})
            folder.addScript(program, "exit 0");
    }
    void addEntry(const std::string& file, const std::string& name, const std::string& rest) {
        folder.addFile(file, "[Desktop Entry]\nType=Application\nName=" + name + "\n" + rest + "\n");
    }
    /// The program that the name stands for, empty for none.
    std::string programFor(const std::string& name) {
        const auto command =
            findApplication(name, {folder.path("a"), folder.path("nothing"), folder.path("b")});
        return command ? command->program : "";
    }

    glimra::tests::ScriptFolder folder;
};

TEST_F(ApplicationFinderTest, PrefersTheExactNameThenTheEarlierFolder) {
    addEntry("a/applications/1.desktop", "the GAME", "Exec=one");
    addEntry("b/applications/deep/er/2.desktop", "The Game", "Exec=two");
    addEntry("b/applications/3.desktop", "\xC3\x84PFEL", "Exec=three");
    EXPECT_EQ(programFor("The Game"), "two");
    EXPECT_EQ(programFor("THE GAME"), "one");
    EXPECT_EQ(programFor("\xC3\xA4pfel"), "three");
    EXPECT_EQ(programFor("The"), "");
}

TEST_F(ApplicationFinderTest, LetsAnEarlierEntryReplaceOrDeleteALaterOne) {
    addEntry("a/applications/sub-1.desktop", "Another", "Exec=one");
    addEntry("b/applications/sub/1.desktop", "Game", "Exec=two");
    addEntry("a/applications/2.desktop", "Gone", "Exec=one\nHidden=true");
    addEntry("b/applications/2.desktop", "Gone", "Exec=two");
    EXPECT_EQ(programFor("Game"), "");
    EXPECT_EQ(programFor("Gone"), "");
    EXPECT_EQ(programFor("Another"), "one");
}

TEST_F(ApplicationFinderTest, PassesOverWhatCannotBeStarted) {
    addEntry("a/applications/1.desktop", "Game", "Exec=one\nNoDisplay=true");
    addEntry("a/applications/2.desktop", "Game", "Exec=one\nTerminal=true");
    addEntry("a/applications/3.desktop", "Game", "Exec=one\nTryExec=nothing");
    addEntry("a/applications/4.desktop", "Game", "Exec=nothing");
    addEntry("a/applications/5.desktop", "Game", "Exec=one \"");
    addEntry("a/applications/6.desktop", "Game", "TryExec=one");
    addEntry("a/applications/7.desktop", "game", "Exec=two\nTryExec=one");
    EXPECT_EQ(programFor("Game"), "two");
}

TEST_F(ApplicationFinderTest, RunsInTheEntrysFolder) {
    folder.addScript("dir/start", "exit 0");
    addEntry("a/applications/1.desktop", "Game", "Exec=./start --now\nPath=" + folder.path("dir"));
    const auto command = findApplication("Game", {folder.path("a")});
    ASSERT_TRUE(command);
    EXPECT_EQ(runToEnd(*command, std::chrono::seconds(10), {}), 0);
    EXPECT_EQ(command->workingDirectory, folder.path("dir"));
    EXPECT_THAT(command->arguments, ElementsAre("--now"));
}

TEST_F(ApplicationFinderTest, IsNotLedAstray) {
    namespace fs = std::filesystem;
    addEntry("b/applications/game.desktop", "Game", "Exec=two");
    addEntry("a/applications/huge.desktop", "Game", "Exec=one\nComment=" + std::string(300'000, 'x'));
    for (const char* const loop : {"loop1", "loop2", "loop3"})
        fs::create_directory_symlink(folder.path("a/applications"), folder.path("a/applications/") + loop);
    fs::create_symlink("0self", folder.path("a/applications/0self"));
    fs::create_symlink("nowhere", folder.path("a/applications/dangling.desktop"));
    fs::create_directory(folder.path("a/applications/folder.desktop"));
    ASSERT_EQ(::mkfifo(folder.path("a/applications/pipe.desktop").c_str(), 0600), 0);
    folder.addFile("a/applications/bytes.desktop",
                   "[Desktop Entry]\nType=Application\nName=\xFF\xC3\nExec=\xFF\n");
    addEntry("a/applications/z/last.desktop", "Last", "Exec=three");
    EXPECT_EQ(programFor("Game"), "two");
    EXPECT_EQ(programFor("Last"), "three");
    EXPECT_EQ(programFor("\xFF\xC3"), "");
    EXPECT_EQ(programFor(std::string("Game\0", 5)), "");
}

} // namespace
} // namespace glimra::desktop
