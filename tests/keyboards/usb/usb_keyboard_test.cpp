#include "keyboards/usb/usb_keyboard.h"

#include "fake_hid.h"
#include "hid_tree.h"
#include "platform/monotonic_clock.h"

#include <gmock/gmock.h>

namespace glimra::keyboards {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using tests::fakeHid;
using Kind = DeviceStatus::Kind;

std::size_t indexOf(lighting::KeyCode code) {
    return *keyIndex(lighting::driverKeyName(code));
}

std::vector<KeyColor> fullFrame(Rgb color) {
    std::vector<KeyColor> frame;
    for (std::size_t key = 0; key < kLightCount; ++key)
        frame.push_back({key, color});
    return frame;
}

class UsbKeyboardTest : public testing::Test {
protected:
    ~UsbKeyboardTest() override { m_keyboard->close(); }
    void plug(std::uint16_t product) {
        fakeHid.plug(product);
        std::ostringstream id;
        id << "0003:0000046D:0000" << std::hex << std::uppercase << product;
        m_tree.add("hidraw7", id.str());
        ASSERT_TRUE(m_keyboard->open(m_stop).found);
        fakeHid.reports.clear();
    }
    std::vector<std::string> reportsOf(std::vector<KeyColor> keys) {
        EXPECT_EQ(m_keyboard->write(keys).kind, Kind::Ok);
        return std::exchange(fakeHid.reports, {});
    }

    HidTree m_tree;
    WakeEvent m_stop;
    std::unique_ptr<KeyboardDevice> m_keyboard = makeUsbKeyboard(m_tree.folders);
};

TEST_F(UsbKeyboardTest, OneKeyIsOneReportAndACommitOnEveryModel) {
    constexpr lighting::KeyCode kA = 0x1E;
    constexpr lighting::KeyCode kNumberPadDot = 0x53;
    constexpr lighting::KeyCode kG1 = 0x200;
    constexpr lighting::KeyCode kG6 = 0x205;
    constexpr lighting::KeyCode kLogo = 0x209;
    constexpr lighting::KeyCode kBadge = 0x20A;
    const struct {
        std::uint16_t product;
        lighting::KeyCode key;
        /// Empty: the model does not have the key.
        std::string sent;
    } cases[] = {
        {0xC331, kNumberPadDot, "12ff0c3a0001000e63010203"},
        {0xC331, kLogo, "11ff0c3a0010000101010203"},
        {0xC331, kBadge, ""},
        {0xC331, kG1, ""},
        {0xC330, kA, "12ff0c3a0001000e04010203"},
        {0xC330, kNumberPadDot, ""},
        {0xC330, kLogo, ""},
        {0xC335, kA, "12ff0f3d0001000e04010203"},
        {0xC335, kG6, "12ff0f3e0004000906010203"},
        {0xC335, kBadge, "11ff0f3a0010000202010203"},
        {0xC33F, kG1, "11ff106c010203b4ff"},
        {0xC33F, kG6, ""},
    };
    for (auto [product, key, sent] : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << product << " key " << key);
        plug(product);
        const std::vector<std::string> reports = reportsOf({{indexOf(key), {1, 2, 3}}});
        if (sent.empty()) {
            EXPECT_THAT(reports, IsEmpty());
        } else {
            sent.resize(sent.starts_with("12") ? 2 * 64 : 2 * 20, '0');
            EXPECT_THAT(reports, ElementsAre(sent, testing::MatchesRegex("11ff(0c5a|0f5d|107f)0+")));
        }
        m_keyboard->close();
    }
}

TEST_F(UsbKeyboardTest, AnUnpluggedKeyboardIsLostAndFoundAgain) {
    plug(0xC331);
    fakeHid.reportsLeft = 3;
    const DeviceStatus lost = m_keyboard->write(fullFrame({9, 9, 9}));
    EXPECT_EQ(lost.kind, Kind::Lost);
    EXPECT_EQ(lost.text, "The keyboard G810 (046d:c331) does not answer any more.");
    EXPECT_THAT(fakeHid.reports, Each(testing::Not(StartsWith("11ff0c5a")))) << "half a frame is not shown";
    m_keyboard->close();

    m_tree.remove("hidraw7");
    const OpenResult absent = m_keyboard->open(m_stop);
    EXPECT_FALSE(absent.found);
    EXPECT_EQ(absent.text, "There is no keyboard that the USB driver knows.");
    EXPECT_EQ(m_keyboard->serve().kind, Kind::Ok);
    m_tree.add("hidraw7", "0003:0000046D:0000C335");
    EXPECT_EQ(m_keyboard->serve().kind, Kind::LookAgain);
    plug(0xC335);
    EXPECT_THAT(reportsOf(fullFrame({9, 9, 9})), SizeIs(8 + 1 + 1 + 1));
}

TEST_F(UsbKeyboardTest, PluggingAnewIsNoticedAlsoWhenNothingIsSent) {
    for (const char* const node : {"hidraw0", "hidraw1"})
        m_tree.add(node, "0003:0000046D:0000C52B");
    m_tree.add("hidraw3", "0003:0000046D:0000C331");
    plug(0xC331);
    m_tree.remove("hidraw0");
    EXPECT_EQ(m_keyboard->serve().kind, Kind::Ok);
    m_tree.remove("hidraw1");
    m_tree.remove("hidraw3");
    m_tree.add("hidraw3", "0003:0000046D:0000C331");
    EXPECT_TRUE(waitForInput(m_keyboard->watchedFd(), -1, platform::monotonicNow()).first);
    EXPECT_EQ(m_keyboard->serve().text, "The keyboard G810 (046d:c331) was unplugged.");
    EXPECT_EQ(m_keyboard->serve().kind, Kind::Ok);
}

TEST_F(UsbKeyboardTest, ASingleLightShowsTheColorOfTheWholeBoard) {
    plug(0xC33A);
    EXPECT_THAT(reportsOf(fullFrame({1, 2, 3})), ElementsAre(StartsWith("11ff0c3c0001010203")));
    EXPECT_THAT(reportsOf({{indexOf(0x1E), {9, 0, 0}}}), IsEmpty());
}

} // namespace
} // namespace glimra::keyboards
