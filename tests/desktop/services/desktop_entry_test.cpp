#include "desktop/services/application_finder.h"
#include "desktop/services/desktop_entry.h"
#include "desktop/services/login_entry.h"

#include "support/script_folder.h"

#include <gmock/gmock.h>

#include <map>

#include <sys/stat.h>

namespace glimra::desktop {
namespace {

/// What Exec values stand for as they stand in a file.
const std::map<std::string, std::vector<std::string>> kExecs{
    {R"(game "an argument" plain)", {"game", "an argument", "plain"}},
    {R"(game "\\"q\\" \\`x\\` \\$HOME \\\\ \\n" "")", {"game", R"("q" `x` $HOME \ \n)", ""}},
    {"game\\sa\\tb   c", {"game", "a", "b", "c"}},
    {"game %U --name=%c %% %k", {"game", "--name=N %f", "%", "/a b.desktop"}},
    {"game %i %d%n last", {"game", "--icon", "i c", "last"}},
    {"env A=1 lutris lutris:rungameid/1", {"env", "A=1", "lutris", "lutris:rungameid/1"}},
    {"bottles run -p 'The Game' -- %u", {"bottles", "run", "-p", "The Game", "--"}},
    {R"(env WINEPREFIX="/home/u/.wine dir" wine C:\\\\users\\\\Start\\ Menu\\\\Game.lnk)",
     {"env", "WINEPREFIX=/home/u/.wine dir", "wine", R"(C:\users\Start Menu\Game.lnk)"}},
};

TEST(ExecLineTest, FollowsTheStandard) {
    const auto wordsOf = [](const std::string& exec) {
        const auto entry =
            parseDesktopEntry("[Desktop Entry]\nType=Application\nName=N %f\nIcon=i c\nExec=" + exec + "\n");
        return execArguments(entry.value(), "/a b.desktop");
    };
    for (const auto& [exec, words] : kExecs)
        EXPECT_EQ(wordsOf(exec), std::optional(words)) << exec;
    for (const char* const broken : {"", "   ", "game \"open", "game 'open", "game \\\\", "game %", "game %z",
                                     "\"\" game", "%f", "game \"\\\\\""})
        EXPECT_EQ(wordsOf(broken), std::nullopt) << broken;
    DesktopEntry huge;
    huge.name = std::string(50'000, 'x');
    huge.exec = "game %c%c%c%c";
    EXPECT_EQ(execArguments(huge, ""), std::nullopt);
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

TEST(LoginEntryTest, IsWhatTheAutostartFolderSays) {
    const tests::ScriptFolder folder;
    const std::string program = folder.path(R"(50% "new" $HOME\ `x`/glimra)");
    const LoginEntry entry(folder.path("config"), program);
    EXPECT_FALSE(entry.isOn());
    EXPECT_EQ(entry.set(true), "");
    EXPECT_TRUE(entry.isOn());
    const auto written = parseDesktopEntry(folder.content("config/autostart/glimra.desktop"));
    EXPECT_EQ(execArguments(written.value(), ""), (std::vector<std::string>{program, "--hidden"}));
    folder.addFile("config/autostart/glimra.desktop", "[Desktop Entry]\nType=Application\nHidden=true\n");
    EXPECT_FALSE(entry.isOn()) << "the desktop's own settings turned it off";
    EXPECT_EQ(entry.set(true), "");
    EXPECT_EQ(entry.set(false), "");
    EXPECT_FALSE(entry.isOn());
    folder.addScript("glimra", "");
    EXPECT_EQ(LoginEntry(folder.path("config"), folder.path("glimra")).set(true), "");
    EXPECT_NE(folder.content("config/autostart/glimra.desktop").find("Exec=glimra --hidden\n"),
              std::string::npos);
    folder.addFile("blocked", "a file");
    EXPECT_NE(LoginEntry(folder.path("blocked"), program).set(true), "");
}

TEST(DesktopEntryTest, TakesNothingForAnApplicationThatIsNone) {
    for (const std::string file : {"", "[Desktop Entry]", "Type=Application\nName=A\n",
                                   "[Other]\nType=Application\n", "[Desktop Entry]\nType=Link\n",
                                   "[Desktop Entry]\n[Desktop Entry]\nType=Application\n", "\xFF\xFE[[[="})
        EXPECT_EQ(parseDesktopEntry(file), std::nullopt) << file;
    EXPECT_EQ(parseDesktopEntry(std::string("[Desktop Entry]\nType=Application\nName=A\0B\n", 42)),
              std::nullopt);
}

class ApplicationFinderTest : public testing::Test {
protected:
    ApplicationFinderTest() {
        for (const char* const program : {"one", "two", "three", "dir/start"})
            folder.addScript(program, "exit 0");
    }
    void addEntry(const std::string& file, const std::string& name, const std::string& rest) {
        folder.addFile(file, "[Desktop Entry]\nType=Application\nName=" + name + "\n" + rest + "\n");
    }
    std::optional<Command> find(const std::string& name) {
        return findApplication(name, {folder.path("a"), folder.path("nothing"), folder.path("b")});
    }
    /// The program that the name stands for, empty for none.
    std::string programFor(const std::string& name) { return find(name).value_or(Command{}).program; }

    tests::ScriptFolder folder;
};

TEST_F(ApplicationFinderTest, PrefersTheExactNameThenTheEarlierFolder) {
    addEntry("a/applications/1.desktop", "the GAME", "Exec=one");
    addEntry("b/applications/deep/er/2.desktop", "The Game", "Exec=two");
    addEntry("b/applications/3.desktop", "\xC3\x84PFEL", "Exec=three");
    // An earlier entry replaces or deletes a later one.
    addEntry("a/applications/sub-1.desktop", "Another", "Exec=one");
    addEntry("b/applications/sub/1.desktop", "Replaced", "Exec=two");
    addEntry("a/applications/2.desktop", "Gone", "Exec=one\nHidden=true");
    addEntry("b/applications/2.desktop", "Gone", "Exec=two");
    const std::pair<std::string, std::string> programs[]{
        {"The Game", "two"}, {"THE GAME", "one"}, {"\xC3\xA4pfel", "three"}, {"The", ""}, {"Another", "one"},
        {"Replaced", ""},    {"Gone", ""}};
    for (const auto& [name, program] : programs)
        EXPECT_EQ(programFor(name), program) << name;
}

TEST_F(ApplicationFinderTest, PassesOverWhatCannotBeStarted) {
    int number = 0;
    for (const char* const rest : {"Exec=one\nNoDisplay=true", "Exec=one\nTerminal=true",
                                   "Exec=one\nTryExec=nothing", "Exec=nothing", "Exec=one \"", "TryExec=one"})
        addEntry("a/applications/" + std::to_string(++number) + ".desktop", "Game", rest);
    addEntry("a/applications/anybodys.desktop", "Game", "Exec=one");
    ASSERT_EQ(::chmod(folder.path("a/applications/anybodys.desktop").c_str(), 0666), 0);
    addEntry("a/applications/last.desktop", "game",
             "Exec=./start --now\nTryExec=one\nPath=" + folder.path("dir"));
    const auto command = find("Game");
    ASSERT_TRUE(command);
    EXPECT_EQ(runToEnd(*command, std::chrono::seconds(30), {}), 0);
    EXPECT_EQ(command->workingDirectory, folder.path("dir"));
    EXPECT_THAT(command->arguments, testing::ElementsAre("--now"));
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
