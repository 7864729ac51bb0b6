#include "support/shell.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace {

using testing::IsEmpty;
using testing::StartsWith;

/// Runs the program with a script on its standard input. What it writes on standard error counts only where
/// `arguments` say so.
glimra::tests::Outcome run(const std::string& script, const std::string& arguments) {
    return glimra::tests::runShell("printf '" + script + "' | " GLIMRA_REPLAY " " + arguments);
}

TEST(ReplayCommandLineTest, RunsNothingOfAScriptWithAnError) {
    const auto outcome = run("start\nfly", "- 2>/dev/null");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.output, IsEmpty());
    EXPECT_EQ(run("start\nfly", "- 2>&1").output, "-:2: unknown command \"fly\"\n");
}

TEST(ReplayCommandLineTest, RefusesWhatItDoesNotUnderstand) {
    for (const std::string arguments :
         {"", "--only nonsense -", "--seed -1 -", "--fly -", "/proc/no-such-script", "/proc"})
        EXPECT_EQ(run("", arguments + " 2>/dev/null").status, 2) << arguments;
    EXPECT_THAT(run("", "/proc/no-such-script 2>&1").output, StartsWith("/proc/no-such-script:1: "));
}

TEST(ReplayCommandLineTest, FilmsWhatTheKeyboardShows) {
    const std::string folder = testing::TempDir() + "film";
    EXPECT_EQ(run("start\ntoken \"C\"\nwait 1", "--film " + folder + " -").status, 0);
    const std::filesystem::directory_iterator pictures(folder);
    EXPECT_GT(std::distance(begin(pictures), end(pictures)), 5);
}

TEST(ReplayCommandLineTest, NoticesThatItsOutputIsLost) {
    EXPECT_EQ(run("start\nwait 10", "- 2>/dev/null >/dev/full").status, 1);
}

} // namespace
