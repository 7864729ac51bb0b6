#include "keyboards/openrgb/openrgb_device.h"

#include "keyboards/openrgb/stand_in_server.h"
#include "platform/monotonic_clock.h"
#include "support/eventually.h"

#include <gmock/gmock.h>

namespace glimra::keyboards::openrgb {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;
using tests::eventually;
using tests::StandInServer;
using Status = DeviceStatus::Kind;

constexpr Rgb kRed{255, 0, 0};

// LEDs of the small keyboard.
constexpr std::size_t kStripLed = 0;
constexpr std::size_t kEscLed = 2;
constexpr std::size_t kLogoLed = 5;

Controller mouse() {
    Controller device = tests::smallKeyboard("Mouse");
    device.type = 6;
    return device;
}

std::vector<KeyColor> allKeys(Rgb color) {
    std::vector<KeyColor> keys;
    for (std::size_t key = 0; key < kLightCount; ++key)
        keys.push_back({key, color});
    return keys;
}

OpenRgbDevice deviceAt(const StandInServer& server, const Timing& timing = {}, const std::string& name = {}) {
    return OpenRgbDevice({.server = {"127.0.0.1", server.port()}, .keyboardName = name, .timing = timing});
}

/// Serves the device until it says something.
DeviceStatus serveUntilNews(OpenRgbDevice& device) {
    DeviceStatus status;
    eventually([&] {
        status = device.serve();
        return status.kind != Status::Ok;
    });
    return status;
}

testing::AssertionResult shows(const StandInServer& server, const std::string& name, Rgb esc) {
    if (eventually([&] { return server.lights(name).colors.at(kEscLed) == esc; }))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << name << " does not show it";
}

TEST(OpenRgbDevice, LightsTheKeyboardAndPutsEverythingBack) {
    for (const std::uint32_t version : {0U, 5U, 6U}) {
        SCOPED_TRACE(version);
        StandInServer server({mouse(), tests::smallKeyboard()}, {.version = version});
        const StandInServer::Lights before = server.lights("Small Board");
        const StandInServer::Lights others = server.lights("Mouse");
        // The oldest servers are known by their silence.
        OpenRgbDevice device = deviceAt(server, {.versionAnswer = version == 0 ? 50ms : 10s});
        const WakeEvent stop;
        EXPECT_THAT(device.open(stop).text, HasSubstr("\"Small Board\" found through OpenRGB, with 4 keys."));

        EXPECT_EQ(device.write(allKeys({1, 1, 1})).kind, Status::Ok);
        EXPECT_EQ(device.write(std::vector<KeyColor>{{*keyIndex(0x01), kRed}}).kind, Status::Ok);
        ASSERT_TRUE(shows(server, "Small Board", kRed));
        const StandInServer::Lights lights = server.lights("Small Board");
        EXPECT_EQ(lights.mode, "Direct");
        EXPECT_EQ(lights.colors[kLogoLed], (Rgb{1, 1, 1}));
        EXPECT_EQ(lights.colors[kStripLed], before.colors[kStripLed]) << "no key of ours";
        EXPECT_EQ(server.lights("Mouse"), others);

        device.close();
        ASSERT_TRUE(eventually([&] { return server.isLeft(); }));
        EXPECT_EQ(server.lights("Small Board").mode, "Rainbow") << "it has no colors of LEDs to give back";
        EXPECT_THAT(server.complaints(), IsEmpty());
    }
}

TEST(OpenRgbDevice, HandsBackAlsoWhileTheListChangesAndTakesBackWhatOthersChange) {
    Controller board = tests::smallKeyboard();
    board.modes.push_back({.name = "Custom", .flags = 1U << 5, .colorMode = 1, .block = {}});
    board.activeMode = 2;
    StandInServer server({mouse(), board}, {.version = 6});
    const StandInServer::Lights before = server.lights("Small Board");
    OpenRgbDevice device = deviceAt(server);
    const WakeEvent stop;
    ASSERT_TRUE(device.open(stop).found);
    device.write(allKeys(kRed));
    ASSERT_TRUE(shows(server, "Small Board", kRed));
    server.changeMode("Small Board", 0);
    EXPECT_EQ(serveUntilNews(device).kind, Status::AllKeysNeeded);
    device.write(allKeys({1, 2, 3}));
    ASSERT_TRUE(shows(server, "Small Board", {1, 2, 3}));
    EXPECT_EQ(server.lights("Small Board").mode, "Direct");

    board.activeMode = 1;
    server.setDevices({board, mouse()});
    device.close();
    ASSERT_TRUE(eventually([&] { return server.isLeft(); }));
    EXPECT_EQ(server.lights("Small Board"), before);
    EXPECT_THAT(server.complaints(), IsEmpty());
}

TEST(OpenRgbDevice, FollowsItsKeyboardThroughAListThatChanges) {
    StandInServer server({tests::smallKeyboard(), mouse()});
    OpenRgbDevice device = deviceAt(server, {.quiet = 20ms});
    const WakeEvent stop;
    ASSERT_TRUE(device.open(stop).found);
    device.write(allKeys(kRed));
    // The colors come after the mode; a list that changed between the two would be met by both.
    ASSERT_TRUE(shows(server, "Small Board", kRed));
    const Controller another = tests::smallKeyboard("Another");
    server.setDevices({mouse(), another, tests::smallKeyboard()});
    EXPECT_EQ(serveUntilNews(device).kind, Status::AllKeysNeeded);
    device.write(allKeys(kRed));
    EXPECT_TRUE(shows(server, "Small Board", kRed));
    EXPECT_EQ(server.lights("Small Board").mode, "Direct") << "a new search put it back to its own";

    server.setDevices({mouse(), another});
    const DeviceStatus gone = serveUntilNews(device);
    EXPECT_EQ(gone.kind, Status::Lost);
    EXPECT_THAT(gone.text, HasSubstr("has no keyboard \"Small Board\" any more"));
    device.close();
    ASSERT_TRUE(eventually([&] { return server.isLeft(); }));
    EXPECT_EQ(server.lights("Another").mode, "Rainbow");
    EXPECT_THAT(server.complaints(), IsEmpty());
}

TEST(OpenRgbDevice, ComesBackWithItsServerAndStillKnowsWhatItFoundAtFirst) {
    auto server = std::make_unique<StandInServer>(std::vector{tests::smallKeyboard()});
    const std::uint16_t port = server->port();
    const StandInServer::Lights atFirst = server->lights("Small Board");
    OpenRgbDevice device = deviceAt(*server);
    const WakeEvent stop;
    ASSERT_TRUE(device.open(stop).found);
    device.write(allKeys(kRed));
    server.reset();
    EXPECT_THAT(serveUntilNews(device).text, HasSubstr("closed the connection"));
    device.close();
    EXPECT_THAT(device.open(stop).text, HasSubstr("cannot be reached"));

    // It comes back with what we left there.
    Controller left = tests::smallKeyboard();
    left.colors.assign(left.colors.size(), kRed);
    left.activeMode = 1;
    server = std::make_unique<StandInServer>(std::vector{left}, StandInServer::Options{.port = port});
    ASSERT_TRUE(device.open(stop).found);
    device.write(allKeys(kRed));
    device.close();
    ASSERT_TRUE(eventually([&] { return server->isLeft(); }));
    EXPECT_EQ(server->lights("Small Board").mode, atFirst.mode);
}

TEST(OpenRgbDevice, ChoosesTheKeyboardWithMostKeysOrTheOneThatIsNamed) {
    Controller laptop = tests::fullKeyboard("Laptop");
    laptop.type = 19;
    Controller lamp = tests::fullKeyboard("Lamp board");
    lamp.modes.pop_back();
    StandInServer server(
        {mouse(), laptop, tests::fullKeyboard("Small Board Z"), tests::smallKeyboard(), lamp});
    const WakeEvent stop;
    const auto found = [&](const std::string& name) { return deviceAt(server, {}, name).open(stop).text; };
    EXPECT_THAT(found(""), HasSubstr("\"Laptop\""));
    EXPECT_THAT(found("SMALL board"), HasSubstr("\"Small Board\""));
    EXPECT_THAT(found("board z"), HasSubstr("\"Small Board Z\""));
    EXPECT_THAT(found("mouse"), HasSubstr("\"Mouse\"")) << "what the player wants";
    EXPECT_THAT(found("lamp"), HasSubstr("has no keyboard named \"lamp\"")) << "it cannot light single keys";
    server.setDevices({mouse()});
    EXPECT_THAT(found(""), HasSubstr("has no keyboard with a light behind each key"));
    EXPECT_THAT(server.complaints(), IsEmpty());
}

TEST(OpenRgbDevice, SurvivesEveryKindOfNonsense) {
    StandInServer::Bytes huge = packet(PacketId::ControllerData, 0);
    std::fill(huge.begin() + 12, huge.end(), std::uint8_t{0xFF});
    StandInServer::Bytes cut =
        packet(PacketId::ControllerData, 0, tests::encodeDevice(tests::smallKeyboard(), 5));
    cut.resize(cut.size() / 2);
    const std::string web = "HTTP/1.1 400 No\r\n";
    const auto refusal =
        packet(PacketId::Acknowledgement, 0, StandInServer::Bytes{0x1A, 4, 0, 0, 4, 0, 0, 0});
    const struct {
        std::uint32_t inPlaceOf;
        StandInServer::Bytes bytes;
        const char* problem;
    } cases[] = {
        {0, {}, "did not answer"},
        {0, {web.begin(), web.end()}, "not of its protocol"},
        {0, numberPacket(PacketId::ControllerCount, 0, 0xFFFFFFFF), "not of its protocol"},
        {1, huge, "not of its protocol"},
        {1, cut, "did not answer"},
        {1, packet(PacketId::ControllerData, 9, tests::encodeDevice(tests::smallKeyboard(), 5)),
         "did not answer"},
        {40, packet(PacketId::ProtocolVersion, 0), "not of its protocol"},
        {1050, {web.begin(), web.end()}, "not of its protocol"},
        {1050, refusal, "does not let the keyboard be lit"},
    };
    for (const auto& [inPlaceOf, bytes, problem] : cases) {
        SCOPED_TRACE(testing::Message() << inPlaceOf << " " << problem);
        StandInServer server({tests::smallKeyboard()},
                             {.instead = [&asked = inPlaceOf, &answer = bytes](std::uint32_t request, int) {
                                 return request == asked ? std::optional(answer) : std::nullopt;
                             }});
        const bool waitsInVain = problem == std::string_view("did not answer");
        OpenRgbDevice device = deviceAt(server, {.answer = waitsInVain ? 100ms : 10s});
        const WakeEvent stop;
        const OpenResult opened = device.open(stop);
        EXPECT_EQ(opened.found, inPlaceOf == 1050);
        if (opened.found) {
            device.write(allKeys(kRed));
            EXPECT_THAT(serveUntilNews(device).text, HasSubstr(problem));
            device.close();
        } else {
            EXPECT_THAT(opened.text, HasSubstr(problem));
        }
    }
}

TEST(OpenRgbDevice, IsNotHeldUpByAServerThatStopsReading) {
    WakeEvent goOn;
    StandInServer server({tests::fullKeyboard()}, {.instead = [&](std::uint32_t request, int) {
                             if (request == 1050)
                                 waitForInput(goOn.fd(), -1, platform::monotonicNow() + 20s);
                             return std::optional<StandInServer::Bytes>();
                         }});
    OpenRgbDevice device = deviceAt(server, {.sending = 100ms});
    const WakeEvent stop;
    ASSERT_TRUE(device.open(stop).found);
    DeviceStatus status;
    for (int frame = 0; frame < 100000 && status.kind == Status::Ok; ++frame)
        status = device.write(allKeys(kRed));
    EXPECT_EQ(status.kind, Status::Lost);
    device.close();
    goOn.set();
}

TEST(OpenRgbDevice, StaysWithAServerThatOwesAnAnswer) {
    WakeEvent goOn;
    StandInServer server({tests::smallKeyboard()}, {.instead = [&](std::uint32_t request, int) {
                             if (request == 0)
                                 waitForInput(goOn.fd(), -1, platform::monotonicNow() + 20s);
                             return std::optional<StandInServer::Bytes>();
                         }});
    OpenRgbDevice device = deviceAt(server, {.answer = 50ms});
    const WakeEvent stop;
    for (int time = 0; time < 3; ++time)
        EXPECT_THAT(device.open(stop).text, HasSubstr("did not answer"));
    EXPECT_FALSE(server.isLeft());
    goOn.set();
    EXPECT_EQ(serveUntilNews(device).kind, Status::LookAgain);
    EXPECT_TRUE(device.open(stop).found);
    EXPECT_THAT(server.complaints(), IsEmpty());
}

TEST(OpenRgbDevice, StopsAtOnceButNeverLeavesWhileAnAnswerIsOnItsWay) {
    WakeEvent stop;
    bool saidGoodbye = false;
    StandInServer server({tests::smallKeyboard()}, {.instead = [&](std::uint32_t, int client) {
                             stop.set();
                             saidGoodbye = waitForInput(client, -1, platform::monotonicNow() + 10s).first;
                             return std::optional<StandInServer::Bytes>();
                         }});
    EXPECT_FALSE(deviceAt(server, {.versionAnswer = 20s, .answer = 20s, .lateAnswer = 30s}).open(stop).found);
    ASSERT_TRUE(eventually([&] { return server.isLeft(); }));
    EXPECT_TRUE(saidGoodbye);
    EXPECT_THAT(server.complaints(), IsEmpty());
}

} // namespace
} // namespace glimra::keyboards::openrgb
