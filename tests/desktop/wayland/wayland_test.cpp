#include "desktop/x11/capture_check.h"
#include "desktop/x11/screen_capture.h"
#include "support/folder.h"
#include "support/x_server.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <regex>

namespace glimra::desktop {
namespace {

using glimra::tests::ChildProcess;
using glimra::tests::eventually;

const std::string kDarkCells = "000000 000000 000000 000000 000000 000000 000000 000000 000000 ";

/// A Wayland session without a screen, in this program's environment and that of the programs it starts.
class WaylandSession {
public:
    explicit WaylandSession(const std::filesystem::path& folder) {
        ::setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
        const auto log = folder / "compositor.log";
        m_compositor = std::make_unique<ChildProcess>(
            "weston", std::vector<std::string>{"weston", "--backend=headless-backend.so", "--xwayland",
                                               "--use-pixman", "--socket=session", "--width=1280",
                                               "--height=720", "--idle-time=0", "--log=" + log.string()});
        std::smatch match;
        std::string text;
        const bool started = eventually([&] {
            text = tests::contentOf(log);
            return std::regex_search(text, match, std::regex("xserver listening on display (:[0-9]+)"));
        });
        if (!started) {
            m_compositor->end(SIGKILL);
            throw std::runtime_error("the compositor does not start:\n" + text);
        }
        m_display = match[1];
        ::setenv("WAYLAND_DISPLAY", "session", 1);
        ::setenv("DISPLAY", m_display.c_str(), 1);
    }
    /// The compositor takes its X server along.
    ~WaylandSession() { m_compositor->end(SIGTERM); }
    WaylandSession(const WaylandSession&) = delete;
    WaylandSession& operator=(const WaylandSession&) = delete;

    const std::string& display() const { return m_display; }

private:
    std::unique_ptr<ChildProcess> m_compositor;
    std::string m_display;
};

/// The game with its add-on: a window of the game's class with a strip at its top edge.
class Game {
public:
    Game() : m_commands(::popen(STRIP_PROGRAM " --hold 200 --window wow.exe -", "w")) {}
    ~Game() { ::pclose(m_commands); }
    Game(const Game&) = delete;
    Game& operator=(const Game&) = delete;

    void command(const std::string& line) {
        std::fputs((line + "\n").c_str(), m_commands);
        std::fflush(m_commands);
    }

private:
    std::FILE* m_commands;
};

class WaylandTest : public ::testing::Test {
protected:
    const std::filesystem::path folder = tests::newFolder();
    WaylandSession session{folder};
};

/// Sends a message again and again, since a machine that is busy elsewhere may miss a frame, until `text` is
/// in the file behind `offset`.
bool answers(Game& game, const std::string& message, const std::filesystem::path& file, std::size_t offset,
             const std::string& text) {
    for (int attempt = 0; attempt < 10; ++attempt) {
        game.command("send " + message);
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
        while (std::chrono::steady_clock::now() < deadline) {
            if (tests::contentOf(file).find(text, offset) != std::string::npos)
                return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    return false;
}

TEST_F(WaylandTest, TheProgramLightsKeysForTheGamesWindow) {
    const auto trace = folder / "trace";
    ::signal(SIGPIPE, SIG_IGN);
    ::setenv("QT_QPA_PLATFORM", "xcb", 1);
    ChildProcess glimra(GLIMRA_PROGRAM, {"glimra", "--keyboard", "virtual", "--settings",
                                         (folder / "settings.ini").string(), "--trace", trace.string()});
    const auto says = [&](const char* text) {
        return eventually([&] { return tests::contentOf(trace).find(text) != std::string::npos; });
    };
    ASSERT_TRUE(says("Screen capture: the game's own window is read")) << tests::contentOf(trace);
    {
        Game game;
        ASSERT_TRUE(answers(game, "C", trace, 0, R"("LogiLedPulseSingleKey")")) << tests::contentOf(trace);
    }
    // Gone with its window, and started anew.
    const std::size_t seen = tests::contentOf(trace).size();
    Game game;
    EXPECT_TRUE(answers(game, "O", trace, seen, R"("LogiLedStopEffectsOnKey")")) << tests::contentOf(trace);
    glimra.signal(SIGTERM);
    EXPECT_EQ(glimra.wait(), 0);
}

} // namespace
} // namespace glimra::desktop
