#include "desktop/x11/frontmost_application.h"
#include "desktop/x11/process_text.h"
#include "desktop/x11/raise_window.h"
#include "desktop/x11/utf8.h"
#include "platform/monotonic_clock.h"
#include "support/folder.h"
#include "support/x_server.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace glimra::desktop {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using platform::RunningApplication;
using testing::Optional;
using tests::ChildProcess;
using tests::eventually;
using tests::XClient;
using tests::XvfbServer;

const RunningApplication kGame{std::string(kGameIdentifier)};
const RunningApplication kEditor{"Editor"};
const RunningApplication kNameless{};

TEST(IdentifyTest, KnowsTheGameByItsWindowsProgram) {
    EXPECT_EQ(identify({"wow.exe", "wow.exe", "", 0}), kGame);
    EXPECT_EQ(identify({"WowClassic.exe", "Wine", "", 0}), kGame);
    EXPECT_EQ(identify({"editor", "Editor", "World of Warcraft", 0}), kEditor);
    EXPECT_EQ(identify({"wow.exe.exe", "Editor", "", 0}), kEditor);
    EXPECT_EQ(identify({"editor", "", "Editor", 0}), kNameless);

    // Proton's class does not tell the program: the process does, and the title where there is no process.
    const std::string proton = "steam_app_default";
    EXPECT_EQ(identify({proton, proton, "World of Warcraft", 0}), kGame);
    EXPECT_EQ(identify({proton, proton, "World of Warcraft forum", 0}), RunningApplication{proton});
    EXPECT_EQ(identify({proton, proton, "World of Warcraft", 0xFFFFFFFF}), kGame);
    const auto identifyAs = [&](const char* program, const std::string& title) {
        const ChildProcess process("sleep", {program, "60"});
        const auto id = static_cast<std::uint32_t>(process.pid());
        EXPECT_TRUE(eventually([&] { return !windowsProgram(id).empty(); }));
        return identify({proton, proton, title, id});
    };
    EXPECT_EQ(identifyAs("C:\\Games\\_retail_\\Wow.exe", ""), kGame);
    EXPECT_EQ(identifyAs("Z:/games/Launcher.exe", "World of Warcraft"), RunningApplication{proton});
}

TEST(ProcessTextTest, WhatNeverAnswersIsNotWaitedForNorAskedOverAndOver) {
    const std::string pipe = tests::newFolder() / "pipe";
    mkfifo(pipe.c_str(), 0600);
    const auto start = std::chrono::steady_clock::now();
    for (int time = 0; time < 100; ++time)
        EXPECT_EQ(readPatiently(pipe), std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
    // The other end: what hung ends, and others are read again.
    std::ofstream(pipe) << "late";
    EXPECT_TRUE(eventually([] { return readPatiently("/proc/self/comm").has_value(); }));
}

TEST(Utf8Test, ReplacesOnlyWhatIsNotUtf8) {
    const std::string bad = "\xEF\xBF\xBD";
    EXPECT_EQ(validUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xAE\0z"s),
              "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xAE\0z"s);
    EXPECT_EQ(validUtf8("\xE9t\xE9"), bad + "t" + bad);
    // Overlong, surrogate, beyond the last character, cut off.
    EXPECT_EQ(validUtf8("\xC0\xAF|\xED\xA0\x80|\xF4\x90\x80\x80"),
              bad + bad + "|" + bad + bad + bad + "|" + bad + bad + bad + bad);
    EXPECT_EQ(validUtf8("a\xF0\x9F\x8E"), "a" + bad);
}

/// Lets the application in front be told by its own descriptor and time, as a program's event loop does.
bool serveUntil(X11FrontmostApplication& application, const std::function<bool()>& condition) {
    return eventually([&] {
        pollfd waiting{application.fileDescriptor(), POLLIN, 0};
        const platform::Time now = platform::monotonicNow();
        if (::poll(&waiting, 1, 0) > 0 || application.wakeUpAt().value_or(now + 1s) <= now)
            application.processEvents(now);
        return condition();
    });
}

/// A server without a window manager, whose part the test plays.
class FrontmostTest : public testing::Test {
protected:
    void activate(xcb_window_t window) {
        client.setNumber(client.root(), client.atom("_NET_ACTIVE_WINDOW"), window);
        now += 1s;
        application.processEvents(now);
    }

    XvfbServer server{"800x600x24", tests::reservedDisplayNumber()};
    XClient client{server.display()};
    int changes = 0;
    X11FrontmostApplication application{server.display(), [this] { ++changes; }};
    platform::Time now = platform::monotonicNow() + 1h;
};

TEST_F(FrontmostTest, FollowsTheActiveWindow) {
    EXPECT_EQ(application.frontmost(), std::nullopt);
    const auto editor = client.createWindow("editor\0Editor\0"s);
    activate(editor);
    activate(editor);
    EXPECT_THAT(application.frontmost(), Optional(kEditor));
    EXPECT_EQ(changes, 1);
    activate(client.createWindow("wow.exe\0wow.exe\0"s));
    EXPECT_THAT(application.frontmost(), Optional(kGame));
    for (const std::string& halfClass : {""s, "only"s, "only\0"s, "\0"s, "\0\0\0\0"s}) {
        activate(client.createWindow(halfClass));
        EXPECT_THAT(application.frontmost(), Optional(kNameless)) << halfClass;
    }
    activate(editor);
    client.setText(editor, XCB_ATOM_WM_CLASS, "x\0Viewer\0"s);
    application.processEvents(now += 1s);
    EXPECT_THAT(application.frontmost(), Optional(RunningApplication{"Viewer"}));
    EXPECT_EQ(changes, 5);
}

TEST_F(FrontmostTest, IgnoresAShortTimeWithoutAWindow) {
    const auto editor = client.createWindow("editor\0Editor\0"s);
    activate(editor);
    activate(XCB_NONE);
    EXPECT_EQ(application.wakeUpAt(), now + 100ms);
    application.processEvents(now + 99ms);
    EXPECT_THAT(application.frontmost(), Optional(kEditor));
    activate(editor);
    EXPECT_EQ(changes, 1);

    client.destroy(editor);
    activate(editor);
    EXPECT_THAT(application.frontmost(), Optional(kEditor)) << "a window that has gone is none";
    application.processEvents(now + 100ms);
    EXPECT_THAT(application.frontmost(), Optional(kNameless)) << "the empty desktop";
    EXPECT_EQ(application.wakeUpAt(), std::nullopt);
    EXPECT_EQ(changes, 2);
}

TEST_F(FrontmostTest, BoundsAndCleansWhatAWindowTells) {
    const auto odd = client.createWindow("x\0"s + std::string(60000, '\xFF'));
    activate(odd);
    const std::string name = application.frontmost().value().bundleIdentifier.value();
    EXPECT_EQ(name.substr(0, 3), "\xEF\xBF\xBD");
    EXPECT_LE(name.size(), 3 * 1024);
    client.setNumber(odd, XCB_ATOM_WM_CLASS, 7);
    client.setText(odd, client.atom("_NET_WM_PID"), "text");
    application.processEvents(now += 1s);
    EXPECT_THAT(application.frontmost(), Optional(kNameless));

    // A window that changes its class all the time is not read every time.
    for (int i = 0; i < 50; ++i) {
        client.setText(odd, XCB_ATOM_WM_CLASS, "x\0Class"s + std::to_string(i));
        application.processEvents(now);
    }
    EXPECT_THAT(application.frontmost(), Optional(kNameless));
    application.processEvents(application.wakeUpAt().value());
    EXPECT_THAT(application.frontmost(), Optional(RunningApplication{"Class49"}));
}

TEST_F(FrontmostTest, OutlivesTheServer) {
    activate(client.createWindow("editor\0Editor\0"s));
    server.kill();
    ASSERT_TRUE(serveUntil(application, [&] { return !application.frontmost(); }));
    EXPECT_EQ(application.fileDescriptor(), -1);

    XvfbServer again("800x600x24", server.number());
    XClient other(again.display());
    other.setNumber(other.root(), other.atom("_NET_ACTIVE_WINDOW"),
                    other.createWindow("wow.exe\0wow.exe\0"s));
    EXPECT_TRUE(serveUntil(application, [&] { return application.frontmost() == kGame; }));
}

TEST(WindowManagerTest, TellsTheWindowInFrontAndRaisesAnother) {
    XvfbServer server;
    ChildProcess windowManager("openbox", {"openbox"}, server.display());
    XClient client(server.display());
    X11FrontmostApplication application(server.display());
    ASSERT_TRUE(client.showManaged(client.createWindow("editor\0Editor\0"s, "some text")));
    ASSERT_TRUE(client.showManaged(client.createWindow("wow.exe\0wow.exe\0"s, "World of Warcraft")));
    for (const auto& [name, expected] :
         {std::pair("EDITOR", kEditor), {"World of Warcraft", kGame}, {"editor", kEditor}}) {
        ASSERT_TRUE(raiseWindow(server.display(), name));
        EXPECT_TRUE(serveUntil(application, [&, wanted = expected] {
            return application.frontmost() == wanted;
        })) << name;
    }
    EXPECT_FALSE(raiseWindow(server.display(), "Nobody"));
    EXPECT_FALSE(raiseWindow(server.display(), ""));
    EXPECT_FALSE(raiseWindow("nonexistent", "Editor"));
}

} // namespace
} // namespace glimra::desktop
