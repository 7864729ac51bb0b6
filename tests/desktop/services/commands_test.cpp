#include "app/launcher.h"
#include "desktop/services/linux_commands.h"
#include "desktop/services/process.h"
#include "desktop/services/theme_sounds.h"
#include "platform/locked.h"

#include "support/script_folder.h"

#include <gmock/gmock.h>

#include <atomic>
#include <csignal>
#include <future>
#include <optional>
#include <sstream>

#include <sys/wait.h>
#include <unistd.h>

namespace glimra::desktop {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using tests::eventually;
using tests::millisecondsOf;

class ProcessTest : public testing::Test {
protected:
    std::optional<int> run(const std::string& program, std::vector<std::string> arguments = {}) {
        return runToEnd({program, std::move(arguments), {}}, 30s, {});
    }
    void expectSoon(const std::string& file, const std::string& content) {
        eventually([&] { return folder.content(file) == content; });
        EXPECT_EQ(folder.content(file), content);
    }

    tests::ScriptFolder folder;
};

TEST_F(ProcessTest, HandsEveryArgumentOverByteForByte) {
    folder.addScript("args", R"(printf '%s\n' "$@" > "$OUT/args.txt")");
    EXPECT_EQ(run("args", {"", "a b", "$(touch pwned);`x`", "--", "\xFF\"'\\"}), 0);
    EXPECT_EQ(folder.content("args.txt"), "\na b\n$(touch pwned);`x`\n--\n\xFF\"'\\\n");
    EXPECT_EQ(run("args", {std::string("a\0b", 3)}), std::nullopt);
}

TEST_F(ProcessTest, RunsNothingButProgramFiles) {
    folder.addFile("text", "echo no program");
    folder.addScript("folder/inside", "exit 0");
    folder.addFile("noshebang", "exit 0\n");
    std::filesystem::permissions(folder.path("noshebang"), std::filesystem::perms::owner_all);
    for (const char* const program : {"text", "folder", "inside", ""})
        EXPECT_EQ(run(program), std::nullopt) << program;
    EXPECT_EQ(run(folder.path("folder/inside")), 0);
    EXPECT_FALSE(startDetached({"nosuchprogram", {}, {}}));
    EXPECT_NE(run("noshebang"), 0) << "a shell would take it for a script of its own";
}

TEST_F(ProcessTest, KillsWhatHangsWithAllThatItHasStarted) {
    folder.addScript("hang", "sleep 100 &\nprintf $! > \"$OUT/part\"\nmv \"$OUT/part\" \"$OUT/pid\"\nwait");
    EXPECT_LT(millisecondsOf([&] { EXPECT_EQ(runToEnd({"hang", {}, {}}, 1ms, {}), std::nullopt); }), 30'000);

    std::filesystem::remove(folder.path("pid"));
    std::stop_source stop;
    std::jthread stopper([&] {
        eventually([&] { return !folder.content("pid").empty(); });
        stop.request_stop();
    });
    EXPECT_EQ(runToEnd({"hang", {}, {}}, 60s, stop.get_token()), std::nullopt);
    EXPECT_TRUE(eventually([&] {
        // A killed orphan may wait as a zombie for its new parent.
        const std::string status = tests::contentOf("/proc/" + folder.content("pid") + "/stat");
        return status.empty() || status.find(") Z ") != std::string::npos;
    }));
}

TEST_F(ProcessTest, GivesNothingOfOursToAProgram) {
    const int inheritable = ::dup(STDERR_FILENO);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    ::signal(SIGINT, SIG_IGN);

    folder.addScript("descriptors", "ls /proc/self/fd > \"$OUT/fds\"");
    EXPECT_EQ(run("descriptors"), 0);
    EXPECT_EQ(folder.content("fds"), "0\n1\n2\n3\n") << "the last one is the list of the folder itself";
    folder.addScript("suicide", "kill -s \"$1\" $$");
    EXPECT_EQ(run("suicide", {"TERM"}), std::nullopt);
    EXPECT_EQ(run("suicide", {"INT"}), std::nullopt);

    // Whoever has started us may ignore the end of children: then it comes without a status.
    ::signal(SIGCHLD, SIG_IGN);
    EXPECT_LT(millisecondsOf([&] { run("true"); }), 20'000);
    EXPECT_TRUE(startDetached({"true", {}, {}}));
    for (const int signal : {SIGCHLD, SIGINT})
        ::signal(signal, SIG_DFL);
    ::pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
    ::close(inheritable);
}

TEST_F(ProcessTest, DetachesWhatItStarts) {
    folder.addScript("detached", "{ cut -d' ' -f 4,6 /proc/$$/stat; pwd; } > \"$OUT/part\"\n"
                                 "mv \"$OUT/part\" \"$OUT/ids\"");
    ASSERT_TRUE(startDetached({"detached", {}, "/usr"}));
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "nothing is left to be waited for";
    ASSERT_TRUE(eventually([&] { return !folder.content("ids").empty(); }));
    pid_t parent = 0, session = 0;
    std::string where;
    std::istringstream(folder.content("ids")) >> parent >> session >> where;
    EXPECT_NE(parent, ::getpid());
    EXPECT_NE(session, ::getsid(0));
    EXPECT_EQ(where, "/usr");
}

TEST(BackgroundWorkerTest, KeepsTheOrderAndForgetsTheOldest) {
    std::vector<int> done;
    std::promise<void> begun, mayEnd, ended;
    BackgroundWorker worker(2);
    worker.post([&](const std::stop_token&) {
        begun.set_value();
        mayEnd.get_future().wait();
    });
    begun.get_future().wait();
    for (int i = 1; i <= 3; ++i)
        worker.post([&, i](const std::stop_token&) {
            done.push_back(i);
            if (i == 3)
                ended.set_value();
        });
    mayEnd.set_value();
    ended.get_future().wait();
    EXPECT_THAT(done, ElementsAre(2, 3));
}

class CommandsTest : public ProcessTest {
protected:
    CommandsTest() { folder.addScript("record", R"(printf '%s\n' "$@" >> "$OUT/told")"); }

    void say(const std::string& text) { commands->start("/usr/bin/say", {text}); }
    void script(const std::string& text) { commands->start("/usr/bin/osascript", {text}); }
    void activate(const std::string& name) { script(app::activationScript(name)); }

    platform::Locked<std::vector<std::string>> told;
    platform::Locked<std::vector<std::string>> raised;
    std::atomic<bool> hasWindow = false;
    std::optional<BackgroundWorker> voice{std::in_place, 2};
    std::optional<LinuxCommands> commands{
        std::in_place, *voice,
        [this](const std::string& name) {
            raised.with([&](auto& names) { names.push_back(name); });
            return hasWindow.load();
        },
        [this](const std::string& line) { told.with([&](auto& lines) { lines.push_back(line); }); }};
};

TEST_F(CommandsTest, SpeaksAnyTextAsText) {
    folder.addScript("spd-say", "exec record \"$@\"");
    say("--version; $(x)");
    expectSoon("told", "--\n--version; $(x)\n");
}

TEST_F(CommandsTest, NobodyWaitsForAVoiceThatHangs) {
    folder.addScript("spd-say", "echo \"$@\" >> \"$OUT/spoken\"\nexec sleep 100");
    const auto sayMuch = [this] {
        for (int i = 0; i < 20; ++i)
            say(std::to_string(i));
    };
    EXPECT_LT(millisecondsOf(sayMuch), 5000);
    EXPECT_TRUE(eventually([&] { return !folder.content("spoken").empty(); }));
    commands->start(folder.path("record"), {"a b", "", "*"});
    expectSoon("told", "a b\n\n*\n");
    EXPECT_LT(millisecondsOf([&] {
                  commands.reset();
                  voice.reset();
              }),
              4000)
        << "a voice may take five seconds";
}

TEST_F(CommandsTest, RaisesAWindowBeforeItStartsAnything) {
    const std::string hostile = R"(" to activate\" & (do shell script "x") \\)";
    folder.addFile("home/applications/game.desktop", "[Desktop Entry]\nType=Application\nName="
                                                     R"(" to activate\\" & (do shell script "x") \\\\)"
                                                     "\nExec=record started\n");
    hasWindow = true;
    activate(hostile);
    EXPECT_TRUE(eventually([&] { return raised.copy().size() == 1; }));
    hasWindow = false;
    activate(hostile);
    expectSoon("told", "started\n");
    EXPECT_THAT(raised.copy(), ElementsAre(hostile, hostile));
}

TEST_F(CommandsTest, SaysWhenThereIsNothingToStart) {
    for (const char* const text :
         {"", "-e tell application \"", "-e tell application \"Game\" to quit",
          "-e tell application \" to activate", "-e tell application \"Game\" to activate "})
        script(text);
    activate("");
    activate("No such application");
    commands->start(folder.path("nothing"), {});
    EXPECT_TRUE(eventually([&] { return told.copy().size() >= 3; }));
    EXPECT_THAT(told.copy(), ElementsAre(HasSubstr("no name"), HasSubstr("\"No such application\""),
                                         HasSubstr(folder.path("nothing"))));
    EXPECT_THAT(raised.copy(), ElementsAre("No such application"));
}

class ThemeSoundsTest : public ProcessTest {
protected:
    /// What the player is told when the sound and then another one is played, thrice.
    std::string played(const std::string& player, const std::string& howItEnds) {
        folder.addScript(player, "echo \"$@\" >> \"$OUT/played\"\n" + howItEnds);
        std::promise<void> done;
        BackgroundWorker worker(8);
        ThemeSounds sounds(worker);
        for (const char* const name : {"Tink", "Another", "Tink", "Another", "Tink"})
            sounds.play(name);
        worker.post([&](const std::stop_token&) { done.set_value(); });
        done.get_future().wait();
        return folder.content("played");
    }
};

TEST_F(ThemeSoundsTest, PlaysTheThemesSoundWithThePlayerThatIsThere) {
    folder.addFile("second/sounds/freedesktop/stereo/bell.oga", "sound");
    const std::string line = folder.path("second/sounds/freedesktop/stereo/bell.oga") + "\n";
    EXPECT_EQ(played("paplay", "exit 0"), line + line + line);
}

TEST_F(ThemeSoundsTest, GivesUpAPlayerThatFails) {
    EXPECT_EQ(played("canberra-gtk-play", "exit 1"), "-i bell\n");
}

} // namespace
} // namespace glimra::desktop
