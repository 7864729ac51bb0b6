#include "desktop/services/background_worker.h"
#include "desktop/services/process.h"

#include "support/script_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <future>
#include <iterator>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace glimra::desktop {
namespace {

using namespace std::chrono_literals;
using glimra::tests::eventually;
using glimra::tests::millisecondsOf;
using ::testing::ElementsAre;

class ProcessTest : public ::testing::Test {
protected:
    std::optional<int> run(const std::string& program, std::vector<std::string> arguments = {}) {
        return runToEnd({program, std::move(arguments), {}}, 10s, {});
    }
    bool isRunning(const std::string& pidFile) {
        // Field 3, behind the name; a killed orphan may wait as a zombie for its new parent.
        std::ifstream file("/proc/" + std::to_string(std::stoi(folder.content(pidFile))) + "/stat");
        const std::string status(std::istreambuf_iterator<char>(file), {});
        return !status.empty() && status.at(status.rfind(')') + 2) != 'Z';
    }

    glimra::tests::ScriptFolder folder;
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
    EXPECT_EQ(run("text"), std::nullopt);
    EXPECT_EQ(run("folder"), std::nullopt);
    EXPECT_EQ(run("inside"), std::nullopt);
    EXPECT_EQ(run(folder.path("folder/inside")), 0);
    EXPECT_EQ(run(""), std::nullopt);
    EXPECT_FALSE(startDetached({"nosuchprogram", {}, {}}));
    // A shell would take it for a script of its own.
    EXPECT_NE(run("noshebang"), 0);
}

TEST_F(ProcessTest, KillsWhatHangsWithAllThatItHasStarted) {
    folder.addScript("hang", "sleep 100 &\necho $! > \"$OUT/pid\"\nwait");
    EXPECT_EQ(runToEnd({"hang", {}, {}}, 300ms, {}), std::nullopt);
    EXPECT_TRUE(eventually([&] { return !isRunning("pid"); }));
}

TEST_F(ProcessTest, WorksWhereTheEndOfChildrenIsIgnored) {
    folder.addScript("quick", "exit 1");
    ::signal(SIGCHLD, SIG_IGN);
    EXPECT_LT(millisecondsOf([&] { run("quick"); }), 5000);
    EXPECT_TRUE(startDetached({"quick", {}, {}}));
    ::signal(SIGCHLD, SIG_DFL);
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
    // The last one is the list of the folder itself.
    EXPECT_EQ(folder.content("fds"), "0\n1\n2\n3\n");
    folder.addScript("suicide", "kill -s \"$1\" $$");
    EXPECT_EQ(run("suicide", {"TERM"}), std::nullopt);
    EXPECT_EQ(run("suicide", {"INT"}), std::nullopt);

    ::signal(SIGINT, SIG_DFL);
    ::pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
    ::close(inheritable);
}

TEST_F(ProcessTest, DetachesWhatItStarts) {
    folder.addScript("detached", "cut -d' ' -f 4,6 /proc/$$/stat > \"$OUT/part\"\npwd > \"$OUT/where\"\n"
                                 "echo $$ > \"$OUT/pid\"\nmv \"$OUT/part\" \"$OUT/ids\"\nexec sleep 100");
    ASSERT_TRUE(startDetached({"detached", {}, "/usr"}));
    // Nothing is left to be waited for.
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    ASSERT_TRUE(eventually([&] { return !folder.content("ids").empty(); }));
    int parent = 0, session = 0;
    ASSERT_EQ(std::sscanf(folder.content("ids").c_str(), "%d %d", &parent, &session), 2);
    EXPECT_NE(parent, ::getpid());
    EXPECT_NE(session, ::getsid(0));
    EXPECT_EQ(folder.content("where"), "/usr\n");
    ::kill(std::stoi(folder.content("pid")), SIGKILL);
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

} // namespace
} // namespace glimra::desktop
