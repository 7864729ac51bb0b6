#include "keyboards/usb/usb_keyboard.h"

#include "fake_hid.h"
#include "hid_tree.h"
#include "platform/monotonic_clock.h"

#include <gmock/gmock.h>

#include <iostream>
#include <thread>

namespace glimra::keyboards {
namespace {

namespace fakeHid = tests::fakeHid;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

const std::string kCommit = "11ff0c5a" + std::string(32, '0');

/// The report of `size` bytes that begins with these bytes and is filled up with zeros.
std::string report(std::string bytes, std::size_t size) {
    bytes.resize(2 * size, '0');
    return bytes;
}

std::size_t indexOf(lighting::KeyCode code) {
    return *keyIndex(lighting::driverKeyName(code));
}

std::vector<KeyColor> fullFrame(Rgb color) {
    std::vector<KeyColor> frame;
    for (std::size_t key = 0; key < kKeyCount; ++key)
        frame.push_back({key, color});
    return frame;
}

class UsbKeyboardTest : public testing::Test {
protected:
    void plug(std::uint16_t product) {
        fakeHid::plug(product);
        ASSERT_TRUE(m_keyboard->open(m_stop).found);
        fakeHid::takeReports();
    }
    std::vector<std::string> reportsOf(std::vector<KeyColor> keys) {
        EXPECT_EQ(m_keyboard->write(keys).kind, DeviceStatus::Kind::Ok);
        return fakeHid::takeReports();
    }
    void TearDown() override {
        m_keyboard->close();
        fakeHid::unplug();
        fakeHid::takeReports();
    }

    HidTree m_tree;
    WakeEvent m_stop;
    std::unique_ptr<KeyboardDevice> m_keyboard = makeUsbKeyboard(m_tree.folders());
};

TEST_F(UsbKeyboardTest, OneKeyIsOneReportAndACommitOnEveryModel) {
    constexpr lighting::KeyCode kA = 0x1E;
    constexpr lighting::KeyCode kNumberPad5 = 0x4C;
    constexpr lighting::KeyCode kG1 = 0x200;
    constexpr lighting::KeyCode kG6 = 0x205;
    constexpr lighting::KeyCode kLogo = 0x209;
    constexpr lighting::KeyCode kBadge = 0x20A;
    struct Case {
        std::uint16_t product;
        lighting::KeyCode key;
        /// Empty: the model does not have the key.
        std::string_view sent;
    };
    const std::array cases{
        Case{0xC331, kA, "12ff0c3a0001000e04010203"},
        Case{0xC331, kNumberPad5, "12ff0c3a0001000e5d010203"},
        Case{0xC331, kLogo, "11ff0c3a0010000101010203"},
        Case{0xC331, kBadge, ""},
        Case{0xC331, kG1, ""},
        Case{0xC330, kNumberPad5, ""},
        Case{0xC330, kLogo, ""},
        Case{0xC33C, kLogo, ""},
        Case{0xC335, kA, "12ff0f3d0001000e04010203"},
        Case{0xC335, kG6, "12ff0f3e0004000906010203"},
        Case{0xC335, kLogo, "11ff0f3a0010000201010203"},
        Case{0xC335, kBadge, "11ff0f3a0010000202010203"},
        Case{0xC33F, kA, "11ff106c01020301ff"},
        Case{0xC33F, kG1, "11ff106c010203b4ff"},
        Case{0xC33F, kLogo, "11ff106c010203d2ff"},
        Case{0xC33F, kG6, ""},
        Case{0xC33F, kBadge, ""},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << one.product << " key " << one.key);
        plug(one.product);
        const std::vector<std::string> reports = reportsOf({{indexOf(one.key), {1, 2, 3}}});
        if (one.sent.empty()) {
            EXPECT_THAT(reports, IsEmpty());
        } else {
            ASSERT_THAT(reports, SizeIs(2));
            EXPECT_EQ(reports[0], report(std::string(one.sent), one.sent.starts_with("12") ? 64 : 20));
            EXPECT_THAT(reports[1], testing::MatchesRegex("11ff(0c5a|0f5d|107f)0+"));
        }
        m_keyboard->close();
    }
}

TEST_F(UsbKeyboardTest, AnUnpluggedKeyboardIsLostAndFoundAgain) {
    m_tree.add("hidraw0", "0003:0000046D:0000C331");
    plug(0xC331);
    fakeHid::unplugAfter(3);
    const DeviceStatus lost = m_keyboard->write(fullFrame({9, 9, 9}));
    EXPECT_EQ(lost.kind, DeviceStatus::Kind::Lost);
    EXPECT_EQ(lost.text, "The keyboard G810 (046d:c331) does not answer any more.");
    EXPECT_THAT(fakeHid::takeReports(), Each(testing::Ne(kCommit)));
    m_keyboard->close();

    m_tree.remove("hidraw0");
    const OpenResult absent = m_keyboard->open(m_stop);
    EXPECT_FALSE(absent.found);
    EXPECT_EQ(absent.text, "There is no keyboard that the USB driver knows.");
    EXPECT_EQ(m_keyboard->watchedFd(), -1);

    fakeHid::plug(0xC335);
    const OpenResult found = m_keyboard->open(m_stop);
    EXPECT_TRUE(found.found);
    EXPECT_EQ(found.text, "The keyboard G910 (046d:c335) is lit over USB.");
    EXPECT_THAT(reportsOf(fullFrame({9, 9, 9})), SizeIs(8 + 1 + 1 + 1));
}

TEST_F(UsbKeyboardTest, PluggingAnewIsNoticedAlsoWhenNothingIsSent) {
    m_tree.add("hidraw0", "0003:0000046D:0000C52B");
    m_tree.add("hidraw3", "0003:0000046D:0000C331");
    plug(0xC331);
    m_tree.remove("hidraw0");
    EXPECT_EQ(m_keyboard->serve().kind, DeviceStatus::Kind::Ok);
    m_tree.remove("hidraw3");
    m_tree.add("hidraw3", "0003:0000046D:0000C331");
    EXPECT_TRUE(waitForInput(m_keyboard->watchedFd(), -1, platform::monotonicNow()).first);
    const DeviceStatus lost = m_keyboard->serve();
    EXPECT_EQ(lost.kind, DeviceStatus::Kind::Lost);
    EXPECT_EQ(lost.text, "The keyboard G810 (046d:c331) was unplugged.");
    EXPECT_EQ(m_keyboard->serve().kind, DeviceStatus::Kind::Ok);
}

TEST_F(UsbKeyboardTest, ASingleLightShowsTheColourOfMostKeys) {
    const auto colored = [](std::size_t first, std::size_t last, Rgb color) {
        std::vector<KeyColor> keys;
        for (std::size_t i = first; i < last; ++i)
            keys.push_back({indexOf(lighting::keyBitmapOffsets[i].code), color});
        return keys;
    };
    plug(0xC33A);
    const auto only = [](const std::string& color) {
        return ElementsAre(StartsWith("11ff0c3c0001" + color));
    };
    EXPECT_THAT(reportsOf(fullFrame({1, 2, 3})), only("010203"));
    EXPECT_THAT(reportsOf(fullFrame({1, 2, 3})), only("010203"));
    EXPECT_THAT(reportsOf(colored(0, 51, {9, 0, 0})), IsEmpty());
    EXPECT_THAT(reportsOf(colored(51, 52, {9, 0, 0})), only("090000"));
    EXPECT_THAT(reportsOf(colored(0, 1, {5, 5, 5})), only("010203"));
}

TEST_F(UsbKeyboardTest, TheLibraryPrintsNothing) {
    plug(0xC331);
    fakeHid::unplugAfter(0);
    testing::internal::CaptureStdout();
    std::thread writer(
        [this] { EXPECT_EQ(m_keyboard->write(fullFrame({})).kind, DeviceStatus::Kind::Lost); });
    writer.join();
    m_keyboard->write(fullFrame({}));
    std::cout << "our own " << 1 << std::endl;
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "our own 1\n");
}

} // namespace
} // namespace glimra::keyboards
