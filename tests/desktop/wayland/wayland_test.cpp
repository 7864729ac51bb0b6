#include "support/folder.h"
#include "support/x_server.h"

#include <gtest/gtest.h>

namespace glimra {
namespace {

using tests::ChildProcess;
using tests::contentOf;
using tests::eventually;

/// A compositor without a screen, in this program's environment and that of the programs it starts. It takes
/// its X server along when it ends.
class WaylandTest : public testing::Test {
protected:
    WaylandTest() {
        ::setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
        const std::string before = "xserver listening on display ";
        const auto log = folder / "compositor.log";
        compositor = std::make_unique<ChildProcess>(
            "weston", std::vector<std::string>{"weston", "--backend=headless-backend.so", "--xwayland",
                                               "--use-pixman", "--socket=session", "--width=1280",
                                               "--height=720", "--idle-time=0", "--log=" + log.string()});
        if (!says(log, before + ":")) {
            compositor->end(SIGKILL);
            throw std::runtime_error("the compositor does not start:\n" + contentOf(log));
        }
        const std::string text = contentOf(log);
        const std::size_t display = text.find(before) + before.size();
        ::setenv("DISPLAY", text.substr(display, text.find('\n', display) - display).c_str(), 1);
        ::setenv("WAYLAND_DISPLAY", "session", 1);
        ::setenv("QT_QPA_PLATFORM", "xcb", 1);
    }
    ~WaylandTest() override { compositor->end(SIGTERM); }

    static bool says(const std::filesystem::path& file, const std::string& text, std::size_t from = 0) {
        const bool found = eventually([&] { return contentOf(file).find(text, from) != std::string::npos; });
        EXPECT_TRUE(found) << text << " is not in\n" << contentOf(file);
        return found;
    }

    const std::filesystem::path folder = tests::newFolder();
    std::unique_ptr<ChildProcess> compositor;
};

/// The game with its add-on: a window of the game's class with a strip at its top edge, which says the same
/// again and again, since a machine that is busy elsewhere may miss a frame.
struct Game : ChildProcess {
    explicit Game(const std::string& message) : ChildProcess(STRIP_PROGRAM, words(message)) {}

    static std::vector<std::string> words(const std::string& message) {
        std::vector<std::string> all{"glimra-strip", "--hold", "200", "--window", "wow.exe", "send"};
        all.resize(300, message);
        return all;
    }
};

TEST_F(WaylandTest, TheProgramLightsKeysForTheGamesWindow) {
    const auto trace = folder / "trace";
    ChildProcess glimra(GLIMRA_PROGRAM, {"glimra", "--keyboard", "virtual", "--settings",
                                         (folder / "settings.ini").string(), "--trace", trace.string()});
    ASSERT_TRUE(says(trace, "Screen capture: the game's own window is read"));
    {
        const Game game("C");
        ASSERT_TRUE(says(trace, R"("LogiLedPulseSingleKey")"));
    }
    // Gone with its window, and started anew.
    const std::size_t seen = contentOf(trace).size();
    const Game game("O");
    EXPECT_TRUE(says(trace, R"("LogiLedStopEffectsOnKey")", seen));
    glimra.signal(SIGTERM);
    EXPECT_EQ(glimra.wait(), 0);
}

} // namespace
} // namespace glimra
