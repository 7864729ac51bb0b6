#include "keyboards/chosen_keyboard.h"

#include "keyboards/openrgb/stand_in_server.h"
#include "keyboards/sdk/fake_sdk_calls.h"
#include "support/eventually.h"
#include "support/real_time_loop.h"

#include <gmock/gmock.h>

namespace glimra::keyboards {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using tests::StandInServer;
using tests::takeCalls;

constexpr KeyName kEscape = 0x01;
constexpr KeyName kG1 = 0xFFF1;

class ChosenKeyboardTest : public testing::Test {
protected:
    /// A machine with neither keyboard nor server, unless told otherwise.
    static ChosenKeyboard::Options options(const std::string& driver) {
        ChosenKeyboard::Options options;
        options.driver = driver;
        options.drivers.openRgb.server.port = tests::closedPort();
        options.drivers.hidFolders = {"/nowhere", "/nowhere"};
        return options;
    }
    ChosenKeyboard& make(ChosenKeyboard::Options options) {
        m_keyboard.emplace(std::move(options), m_loop);
        m_keyboard->told.observe([this](std::string_view line) { m_lines.emplace_back(line); });
        return *m_keyboard;
    }
    bool runUntilDescribed(std::string_view description) {
        const platform::Time limit = m_loop.now() + 20s;
        while (m_keyboard->description.get() != description && m_loop.now() < limit)
            (void)m_loop.runUntil(m_loop.now() + 1ms);
        return m_keyboard->description.get() == description;
    }
    Rgb drawnEscape() {
        return m_keyboard->drawn().model().colorsAt(m_loop.now())[keyIndex(kEscape).value()];
    }

    tests::RealTimeLoop m_loop;
    std::optional<ChosenKeyboard> m_keyboard;
    std::vector<std::string> m_lines;
};

TEST_F(ChosenKeyboardTest, WithoutAnyOtherTheDrawnOneLightsUntilAServerIsStarted) {
    auto wanted = options("auto");
    // That of a server that is gone by now.
    const std::uint16_t port = StandInServer({tests::smallKeyboard()}).port();
    wanted.drivers.openRgb.server.port = port;
    ChosenKeyboard& keyboard = make(wanted);
    EXPECT_FALSE(keyboard.LogiLedSetLighting(1, 2, 3));
    EXPECT_TRUE(keyboard.LogiLedInit());
    ASSERT_TRUE(m_loop.runUntil(m_loop.now() + 100ms));
    EXPECT_THAT(m_lines, ElementsAre(StartsWith("Keyboard driver sdk: "), "Keyboard driver: auto",
                                     "No keyboard yet: There is no keyboard that the USB driver knows. The "
                                     "OpenRGB server at 127.0.0.1:" +
                                         std::to_string(port) + " cannot be reached (Connection refused)."));
    EXPECT_EQ(keyboard.description.get(), "keyboard in this window");
    EXPECT_TRUE(keyboard.LogiLedSetLighting(100, 0, 0));
    EXPECT_EQ(drawnEscape(), (Rgb{255, 0, 0}));

    // A server without a keyboard does not end the search.
    StandInServer server({}, {.port = port});
    ASSERT_TRUE(tests::eventually([&] {
        (void)m_loop.runUntil(m_loop.now() + 1ms);
        return m_lines.back().find("has no keyboard") != std::string::npos;
    }));
    server.setDevices({tests::smallKeyboard()});
    EXPECT_TRUE(runUntilDescribed("keyboard Small Board through OpenRGB"));
    keyboard.LogiLedShutdown();
}

TEST_F(ChosenKeyboardTest, AVendorsLibraryThatWasAskedForAndRefusesIsAFailure) {
    auto wanted = options("sdk");
    wanted.drivers.sdkLibraries = {FAKE_SDK_REFUSING};
    ChosenKeyboard& keyboard = make(wanted);
    EXPECT_FALSE(keyboard.LogiLedInit());
    EXPECT_THAT(m_lines.front(), AllOf(StartsWith("Keyboard driver sdk: "), HasSubstr(FAKE_SDK_REFUSING)));
    EXPECT_TRUE(keyboard.LogiLedSetLighting(0, 100, 0)) << "the drawn one goes on";
}

TEST_F(ChosenKeyboardTest, TheVendorsLibraryGetsEveryCallAndWhatIsShownWhenItComesLater) {
    auto wanted = options("auto");
    wanted.drivers.sdkLibraries = {FAKE_SDK};
    ChosenKeyboard& keyboard = make(wanted);
    ASSERT_TRUE(keyboard.LogiLedInit());
    EXPECT_THAT(m_lines, ElementsAre("Keyboard driver: sdk"));
    EXPECT_THAT(keyboard.description.get(), StartsWith("keyboard of "));
    EXPECT_TRUE(keyboard.LogiLedSetLightingForKeyWithKeyName(kEscape, 51, 33, 7));
    EXPECT_EQ(takeCalls(FAKE_SDK), "Init\nSetLightingForKeyWithKeyName 1 51 33 7\n");
    EXPECT_NE(drawnEscape(), Rgb{});

    keyboard.choose("virtual");
    EXPECT_EQ(takeCalls(FAKE_SDK), "Shutdown\n");
    keyboard.LogiLedPulseSingleKey(kG1, 100, 1, 2, 50, 3, 4, 400, true);
    keyboard.LogiLedFlashSingleKey(kEscape, 9, 8, 7, 0, 70);
    keyboard.LogiLedFlashSingleKey(0x3B, 9, 8, 7, 5000, 70);
    EXPECT_EQ(takeCalls(FAKE_SDK), "");

    for (const bool anew : {false, true}) {
        if (anew)
            keyboard.resendAll();
        else
            keyboard.choose("sdk");
        const std::string calls = takeCalls(FAKE_SDK);
        std::size_t keys = 0;
        for (std::size_t at = 0; (at = calls.find("ForKeyWith", at)) != std::string::npos; ++at)
            ++keys;
        EXPECT_EQ(keys, kKeyCount);
        EXPECT_THAT(calls,
                    AllOf(HasSubstr("SetTargetDevice 7\n"),
                          HasSubstr("SetLightingForKeyWithKeyName 1 51 33 7\nFlashSingleKey 1 9 8 7 0 70\n"),
                          HasSubstr("PulseSingleKey 65521 100 1 2 50 3 4 400 1\n"),
                          Not(HasSubstr("FlashSingleKey 59"))));
    }
    keyboard.LogiLedShutdown();
    keyboard.choose("sdk");
    EXPECT_EQ(takeCalls(FAKE_SDK), "Shutdown\n");
    EXPECT_FALSE(keyboard.LogiLedSetLighting(1, 2, 3));
}

TEST_F(ChosenKeyboardTest, AServerThatListensIsTakenAndHandedBackForAnother) {
    StandInServer server({tests::smallKeyboard()});
    const auto escape = [&server] { return server.lights("Small Board").colors[2]; };
    auto wanted = options("auto");
    wanted.drivers.openRgb.server.port = server.port();
    EXPECT_THAT(findDriver("openrgb")->look(wanted.drivers).text,
                AllOf(HasSubstr("Small Board"), HasSubstr("its mode \"Direct\"")));
    ChosenKeyboard& keyboard = make(wanted);
    ASSERT_TRUE(keyboard.LogiLedInit());
    EXPECT_TRUE(runUntilDescribed("keyboard Small Board through OpenRGB"));
    (void)m_loop.runUntil(m_loop.now() + 100ms);
    EXPECT_EQ(server.changes("Small Board"), 0) << "it was only looked at, and there is nothing to show yet";
    keyboard.LogiLedSetLighting(0, 0, 100);
    EXPECT_TRUE(tests::eventually([&] { return escape() == Rgb{0, 0, 255}; }));
    EXPECT_THAT(m_lines.back(),
                StartsWith("Keyboard \"Small Board\" found through OpenRGB, with 4 keys. 2 of"));
    (void)m_loop.runUntil(m_loop.now() + 300ms); // until it repeats no frame any more
    const int changes = server.changes("Small Board");
    keyboard.resendAll();
    EXPECT_TRUE(tests::eventually([&] { return server.changes("Small Board") > changes; }, 5s));

    keyboard.choose("virtual");
    EXPECT_TRUE(tests::eventually([&] { return server.lights("Small Board").mode == "Rainbow"; }));
    EXPECT_EQ(keyboard.description.get(), "keyboard in this window");
    keyboard.choose("openrgb");
    EXPECT_TRUE(tests::eventually([&] { return escape() == Rgb{0, 0, 255}; }));
    keyboard.LogiLedShutdown();
    EXPECT_THAT(server.complaints(), IsEmpty());
}

} // namespace
} // namespace glimra::keyboards
