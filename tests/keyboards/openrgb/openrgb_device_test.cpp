#include "keyboards/openrgb/openrgb_device.h"

#include "keyboards/openrgb/stand_in_server.h"
#include "platform/monotonic_clock.h"

#include <gmock/gmock.h>

#include <future>

namespace glimra::keyboards::openrgb {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;
using tests::ServerDevice;
using tests::StandInServer;
using Status = DeviceStatus::Kind;

constexpr KeyName kEsc = 0x01;
constexpr Rgb kRed{255, 0, 0};

// LEDs of the small keyboard.
constexpr std::size_t kStripLed = 0;
constexpr std::size_t kEscLed = 2;
constexpr std::size_t kLogoLed = 5;

ServerDevice mouse() {
    ServerDevice device;
    device.type = 6;
    device.name = "Mouse";
    device.leds = {"Logo"};
    device.colors.resize(1);
    return device;
}

std::vector<KeyColor> allKeys(Rgb color) {
    std::vector<KeyColor> keys;
    for (std::size_t key = 0; key < kKeyCount; ++key)
        keys.push_back({key, color});
    return keys;
}

KeyColor lit(KeyName name, Rgb color) {
    return {*keyIndex(name), color};
}

/// Limits that let a test of a server that says nothing end soon.
Timing shortLimits() {
    Timing timing;
    timing.versionAnswer = timing.answer = timing.sending = 100ms;
    timing.quiet = 20ms;
    return timing;
}

OpenRgbDevice deviceAt(const StandInServer& server, const Timing& timing = {}, const std::string& name = {}) {
    return OpenRgbDevice({{"127.0.0.1", server.port()}, name, timing});
}

/// Serves the device until it says something.
DeviceStatus serveUntilNews(OpenRgbDevice& device) {
    for (;;) {
        if (!waitForInput(device.watchedFd(), -1, platform::monotonicNow() + 10s).first)
            return {};
        const DeviceStatus status = device.serve();
        if (status.kind != Status::Ok)
            return status;
    }
}

testing::AssertionResult showsEsc(const StandInServer& server, const std::string& name, Rgb color) {
    if (server.waitUntil([&] {
            const StandInServer::Lights lights = server.lights(name);
            return lights.colors.size() > kEscLed && lights.colors[kEscLed] == color;
        }))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << name << " does not show it";
}

class EveryVersion : public testing::TestWithParam<std::uint32_t> {
protected:
    /// The oldest servers are known by their silence.
    Timing limits() const {
        Timing timing;
        if (GetParam() == 0)
            timing.versionAnswer = 50ms;
        return timing;
    }
};

INSTANTIATE_TEST_SUITE_P(OpenRgb, EveryVersion, testing::Range(0U, kNewestVersion + 1));

/// Those whose servers tell when devices come and go.
class VersionsWithNotices : public testing::TestWithParam<std::uint32_t> {};

INSTANTIATE_TEST_SUITE_P(OpenRgb, VersionsWithNotices, testing::Range(1U, kNewestVersion + 1));

TEST_P(EveryVersion, LightsTheKeyboardAndPutsEverythingBack) {
    StandInServer server({mouse(), tests::smallKeyboard()}, {.version = GetParam()});
    const StandInServer::Lights before = server.lights("Small Board");
    OpenRgbDevice device = deviceAt(server, limits());
    const WakeEvent stop;
    const OpenResult opened = device.open(stop);
    ASSERT_TRUE(opened.found) << opened.text;
    EXPECT_EQ(opened.text, "Keyboard \"Small Board\" found through OpenRGB, with 4 keys.");

    EXPECT_EQ(device.write(allKeys({1, 1, 1})).kind, Status::Ok);
    EXPECT_EQ(device.write(std::vector{lit(kEsc, kRed)}).kind, Status::Ok);
    ASSERT_TRUE(showsEsc(server, "Small Board", kRed));
    const StandInServer::Lights lights = server.lights("Small Board");
    EXPECT_EQ(lights.mode, "Direct");
    EXPECT_EQ(lights.colors[kLogoLed], (Rgb{1, 1, 1}));
    EXPECT_EQ(lights.colors[kStripLed], before.colors[kStripLed]) << "no key of ours";

    device.close();
    ASSERT_TRUE(server.waitForClients(0));
    EXPECT_EQ(server.lights("Small Board").colors, before.colors);
    EXPECT_EQ(server.lights("Small Board").mode, "Rainbow");
    EXPECT_EQ(server.lights("Mouse").frames, 0U);
    EXPECT_THAT(server.complaints(), IsEmpty());
}

TEST_P(VersionsWithNotices, AreFollowedThroughAListThatChanges) {
    StandInServer server({tests::smallKeyboard(), mouse()}, {.version = GetParam()});
    Timing timing;
    timing.quiet = 20ms;
    OpenRgbDevice device = deviceAt(server, timing);
    const WakeEvent stop;
    ASSERT_TRUE(device.open(stop).found);
    ASSERT_TRUE(server.waitUntil([&] { return server.lights("Small Board").mode == "Direct"; }));
    ServerDevice another = tests::smallKeyboard();
    another.serial = "S2";
    another.name = "Another";
    server.setDevices({mouse(), another, tests::smallKeyboard()});
    EXPECT_EQ(serveUntilNews(device).kind, Status::AllKeysNeeded);
    device.write(allKeys(kRed));
    EXPECT_TRUE(showsEsc(server, "Small Board", kRed));
    EXPECT_EQ(server.lights("Small Board").mode, "Direct") << "a new search put it back to its own";
    EXPECT_EQ(server.lights("Another").frames, 0U);

    server.setDevices({mouse(), another});
    const DeviceStatus gone = serveUntilNews(device);
    EXPECT_EQ(gone.kind, Status::Lost);
    EXPECT_THAT(gone.text, HasSubstr("has no keyboard \"Small Board\" any more"));
    device.close();
    EXPECT_EQ(server.lights("Another").frames, 0U);
    EXPECT_THAT(server.complaints(), IsEmpty());
}

TEST(OpenRgbDevice, ComesBackWithItsServerAndStillKnowsWhatItFoundAtFirst) {
    auto server = std::make_unique<StandInServer>(std::vector{tests::smallKeyboard()});
    const std::uint16_t port = server->port();
    const std::vector<Rgb> atFirst = server->lights("Small Board").colors;
    OpenRgbDevice device = deviceAt(*server);
    const WakeEvent stop;
    ASSERT_TRUE(device.open(stop).found);
    device.write(allKeys(kRed));
    server.reset();
    const DeviceStatus lost = serveUntilNews(device);
    EXPECT_EQ(lost.kind, Status::Lost);
    EXPECT_THAT(lost.text, HasSubstr("closed the connection"));
    device.close();
    const OpenResult refused = device.open(stop);
    EXPECT_FALSE(refused.found);
    EXPECT_THAT(refused.text, HasSubstr("cannot be reached"));

    // It comes back with what we left there.
    ServerDevice left = tests::smallKeyboard();
    left.colors.assign(left.colors.size(), kRed);
    left.activeMode = 1;
    server = std::make_unique<StandInServer>(std::vector{left}, StandInServer::Options{.port = port});
    ASSERT_TRUE(device.open(stop).found);
    device.close();
    ASSERT_TRUE(server->waitForClients(0));
    EXPECT_EQ(server->lights("Small Board").colors, atFirst);
    EXPECT_EQ(server->lights("Small Board").mode, "Rainbow");
}

TEST(OpenRgbDevice, ChoosesTheKeyboardWithMostKeysOrTheOneThatIsNamed) {
    ServerDevice laptop = tests::fullKeyboard("Laptop");
    laptop.type = 19;
    ServerDevice lamp = tests::fullKeyboard("Lamp board");
    lamp.modes[0].name = "Static";
    lamp.modes[0].flags = 1U << 6;
    StandInServer server({mouse(), tests::smallKeyboard(), laptop, lamp});
    const WakeEvent stop;
    const auto found = [&](const std::string& name) { return deviceAt(server, {}, name).open(stop).text; };
    EXPECT_THAT(found(""), HasSubstr("\"Laptop\""));
    EXPECT_THAT(found("small"), HasSubstr("\"Small Board\""));
    EXPECT_THAT(found("mouse"), HasSubstr("\"Mouse\"")) << "what the player wants";
    EXPECT_THAT(found("lamp"), HasSubstr("has no keyboard named \"lamp\"")) << "it cannot light single keys";
    server.setDevices({mouse()});
    EXPECT_THAT(found(""), HasSubstr("has no keyboard with a light behind each key"));
    EXPECT_THAT(server.complaints(), IsEmpty());
}

struct Nonsense {
    const char* name;
    std::uint32_t inPlaceOf;
    StandInServer::Bytes bytes;
};

std::vector<Nonsense> nonsense() {
    StandInServer::Bytes huge = packet(PacketId::ControllerData, 0);
    std::fill(huge.begin() + 12, huge.end(), std::uint8_t{0xFF});
    StandInServer::Bytes cut = packet(PacketId::ControllerData, 0, encodeDevice(tests::smallKeyboard(), 5));
    cut.resize(cut.size() / 2);
    return {
        {"silence", 0, {}},
        {"a web server",
         0,
         {'H', 'T', 'T', 'P', '/', '1', '.', '1', ' ', '4', '0', '0', ' ', 'N', 'o', '\r', '\n'}},
        {"more devices than there can be", 0, numberPacket(PacketId::ControllerCount, 0, 0xFFFFFFFF)},
        {"a payload of four gigabytes", 1, huge},
        {"half of an answer", 1, cut},
        {"another device", 1, packet(PacketId::ControllerData, 9, encodeDevice(tests::smallKeyboard(), 5))}};
}

TEST(OpenRgbDevice, SurvivesEveryKindOfNonsense) {
    for (const Nonsense& what : nonsense()) {
        const auto tamper = [&](std::uint32_t id) {
            return id == what.inPlaceOf ? std::optional(what.bytes) : std::nullopt;
        };
        StandInServer server({tests::smallKeyboard()}, {.tamper = tamper});
        OpenRgbDevice device = deviceAt(server, shortLimits());
        const WakeEvent stop;
        const OpenResult result = device.open(stop);
        EXPECT_FALSE(result.found) << what.name;
        EXPECT_THAT(result.text,
                    testing::AnyOf(HasSubstr("did not answer"), HasSubstr("not of its protocol")))
            << what.name;
    }
}

TEST(OpenRgbDevice, NonsenseWhileItIsOpenIsALoss) {
    StandInServer server({tests::smallKeyboard()});
    OpenRgbDevice device = deviceAt(server);
    const WakeEvent stop;
    ASSERT_TRUE(device.open(stop).found);
    server.sendToAll(StandInServer::Bytes(64, 'x'));
    EXPECT_EQ(serveUntilNews(device).kind, Status::Lost);
    device.close();
}

TEST(OpenRgbDevice, IsNotHeldUpByAServerThatStopsReading) {
    StandInServer server({tests::fullKeyboard()});
    OpenRgbDevice device = deviceAt(server, shortLimits());
    const WakeEvent stop;
    ASSERT_TRUE(device.open(stop).found);
    server.stopReading();
    DeviceStatus status;
    for (int frame = 0; frame < 100000 && status.kind == Status::Ok; ++frame)
        status = device.write(allKeys(kRed));
    EXPECT_EQ(status.kind, Status::Lost);
    device.close();
}

TEST(OpenRgbDevice, StopsAtOnceButNeverLeavesWhileAnAnswerIsOnItsWay) {
    StandInServer server({tests::smallKeyboard()});
    Timing timing;
    timing.farewell = 20s;
    OpenRgbDevice device = deviceAt(server, timing);
    WakeEvent stop;
    server.holdAnswers(true);
    const std::future<OpenResult> opening = std::async(std::launch::async, [&] { return device.open(stop); });
    ASSERT_TRUE(server.waitUntil([&] { return !server.requests().empty(); }));
    const Time stopped = platform::monotonicNow();
    stop.set();
    ASSERT_TRUE(server.waitUntil([&] { return server.clientSaidGoodbye(); }));
    EXPECT_LT(platform::monotonicNow() - stopped, 300ms);
    server.holdAnswers(false);
    opening.wait();
    ASSERT_TRUE(server.waitForClients(0));
    EXPECT_THAT(server.complaints(), IsEmpty());
}

} // namespace
} // namespace glimra::keyboards::openrgb
