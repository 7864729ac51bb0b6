#include "support/shell.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
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

TEST(ReplayCommandLineTest, SeedDecidesWhatIsRandom) {
    const std::string death = "start\ntoken \"D\"\nwait 1";
    EXPECT_EQ(run(death, "--seed 7 -").output, run(death, "--seed 7 -").output);
    EXPECT_NE(run(death, "--seed 7 -").output, run(death, "--seed 8 -").output);
}

TEST(ReplayCommandLineTest, DrawsTheKeyboardAsItIsBeforeItIsHandedBack) {
    const std::string lit = "start\nfront \"com.blizzard.worldofwarcraft\"\nwait 1\n";
    const auto outcome = run(lit + "quit", "--only quit --keyboard -");
    EXPECT_THAT(outcome.output, HasSubstr("\x1b[48;2;255;255;0m\x1b[38;2;0;0;0mEsc\x1b[0m"));
    EXPECT_THAT(outcome.output, EndsWith(run(lit, "--only quit --keyboard -").output));
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
