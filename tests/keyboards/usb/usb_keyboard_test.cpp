#include "keyboards/device_writer.h"
#include "keyboards/usb/usb_keyboard.h"
#include "keyboards/writer_plan.h"

#include "fake_hid.h"
#include "hid_tree.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <condition_variable>
#include <iostream>
#include <iterator>
#include <map>
#include <mutex>
#include <thread>

namespace glimra::keyboards {
namespace {

using std::chrono::milliseconds;
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

/// The keys' names in the order of their HID usages, from 4 on; the one of ISO keyboards is empty. Copyright
/// signs are left out.
constexpr std::array<std::string_view, 98> kFromUsage4{
    " A",          " B",         " C",          " D",          " E",
    " F",          " G",         " H",          " I",          " J",
    " K",          " L",         " M",          " N",          " O",
    " P",          " Q",         " R",          " S",          " T",
    " U",          " V",         " W",          " X",          " Y",
    " Z",          " 1",         " 2",          " 3",          " 4",
    " 5",          " 6",         " 7",          " 8",          " 9",
    " 0",          "Enter",      "Esc",         "Backspace",   "Tab",
    "Spacebar",    "-",          "=",           "[",           "]",
    "\\",          "",           ";",           "'",           "~",
    ",",           ".",          "/",           "Caps Lock",   "F 1",
    "F 2",         "F 3",        "F 4",         "F 5",         "F 6",
    "F 7",         "F 8",        "F 9",         "F10",         "F11",
    "F12",         "Print Scrn", "Scroll Lock", "Pause|Break", "Insert",
    "Home",        "Page Up",    "Delete",      "End",         "Page Down",
    "Arrow Right", "Arrow Left", "Arrow Down",  "Arrow Up",    "Num Lock",
    "NumPad /",    "NumPad *",   "NumPad -",    "NumPad +",    "NumPad Enter",
    "NumPad 1",    "NumPad 2",   "NumPad 3",    "NumPad 4",    "NumPad 5",
    "NumPad 6",    "NumPad 7",   "NumPad 8",    "NumPad 9",    "NumPad 0",
    "NumPad .",    "",           "Context Menu"};
constexpr std::array<std::string_view, 8> kFromUsageE0{"Left Control", "Left Shift",    "Left Alt",
                                                       "Left Windows", "Right Control", "Right Shift",
                                                       "Right Alt",    "Right Windows"};

int usageOf(std::string_view name) {
    name = name.substr(0, name.find(" \u00A9"));
    if (const auto* modifier = std::ranges::find(kFromUsageE0, name); modifier != kFromUsageE0.end())
        return 0xE0 + static_cast<int>(modifier - kFromUsageE0.begin());
    return 4 + static_cast<int>(std::ranges::find(kFromUsage4, name) - kFromUsage4.begin());
}

TEST_F(UsbKeyboardTest, AFullFrameReachesEveryKeyInItsColour) {
    plug(0xC331);
    std::vector<KeyColor> frame = fullFrame({});
    for (KeyColor& key : frame)
        key.color = {static_cast<std::uint8_t>(key.key), static_cast<std::uint8_t>(255 - key.key), 7};
    const std::vector<std::string> reports = reportsOf(frame);

    ASSERT_THAT(reports, SizeIs(10));
    EXPECT_THAT(reports.front(), StartsWith("11ff0c3a0010000101"));
    EXPECT_EQ(reports.back(), kCommit);
    std::map<int, std::string> colorOfUsage;
    for (std::size_t i = 1; i < 9; ++i) {
        EXPECT_THAT(reports[i], SizeIs(128));
        EXPECT_THAT(reports[i], StartsWith("12ff0c3a0001000e"));
        for (std::size_t at = 16; at + 8 <= reports[i].size(); at += 8) {
            const int usage = std::stoi(reports[i].substr(at, 2), nullptr, 16);
            EXPECT_TRUE(colorOfUsage.emplace(usage, reports[i].substr(at + 2, 6)).second || usage == 0)
                << usage;
        }
    }
    colorOfUsage.erase(0);
    EXPECT_THAT(colorOfUsage, SizeIs(104 + 3));
    for (const lighting::KeyBitmapOffset& key : lighting::keyBitmapOffsets) {
        const std::string_view name = *lighting::displayNameOfKey(key.code);
        const int value = static_cast<int>(indexOf(key.code));
        EXPECT_EQ(std::stoi(colorOfUsage[usageOf(name)], nullptr, 16),
                  value * 0x10000 + (255 - value) * 0x100 + 7)
            << name;
    }
    EXPECT_EQ(colorOfUsage[0x32], colorOfUsage[0x31]);
    EXPECT_EQ(colorOfUsage[0x64], colorOfUsage[0xE1]);
    EXPECT_EQ(colorOfUsage[0x87], colorOfUsage[0xE5]);
}

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

TEST_F(UsbKeyboardTest, APulseOverASecondIsOneKeyAndACommitPerFrame) {
    plug(0xC331);
    KeyboardModel model;
    model.setLighting({0, 100, 0});
    WriterPlan plan;
    plan.found(m_keyboard->pace(), Time(0));
    plan.show(model, Time(0));
    const Time begin = milliseconds(100);
    Time time{};
    const auto runUntil = [&](Time end) {
        std::vector<std::vector<std::string>> frames;
        while (time < end) {
            const WriterPlan::Step step = plan.next(time);
            if (step.kind == WriterPlan::Step::Kind::Write)
                frames.push_back(reportsOf({step.keys.begin(), step.keys.end()}));
            else
                time = step.until.value_or(end);
        }
        return frames;
    };
    EXPECT_THAT(runUntil(begin), ElementsAre(SizeIs(10)));

    model.pulse(0x1E, {100, 0, 0}, {0, 0, 100}, milliseconds(1000), Repeat::Once, begin);
    plan.show(model, begin);
    std::vector<std::string> colors;
    for (const std::vector<std::string>& frame : runUntil(begin + milliseconds(1100))) {
        ASSERT_THAT(frame, SizeIs(2));
        EXPECT_THAT(frame[0], StartsWith("12ff0c3a0001000e04"));
        EXPECT_EQ(frame[0], report(frame[0].substr(0, 24), 64));
        EXPECT_EQ(frame[1], kCommit);
        colors.push_back(frame[0].substr(18, 6));
    }
    ASSERT_THAT(colors, SizeIs(31));
    EXPECT_THAT(runUntil(begin + milliseconds(5000)), IsEmpty());
    EXPECT_EQ(colors.front(), "fe0001");
    EXPECT_EQ(colors.back(), "00ff00");
    EXPECT_TRUE(std::is_sorted(colors.begin(), colors.begin() + 16, std::greater()));
    EXPECT_TRUE(std::is_sorted(colors.begin() + 15, colors.begin() + 30));
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
    EXPECT_TRUE(waitForInput(m_keyboard->watchedFd(), -1, monotonicNow()).first);
    const DeviceStatus lost = m_keyboard->serve();
    EXPECT_EQ(lost.kind, DeviceStatus::Kind::Lost);
    EXPECT_EQ(lost.text, "The keyboard G810 (046d:c331) was unplugged.");
    EXPECT_EQ(m_keyboard->serve().kind, DeviceStatus::Kind::Ok);
}

TEST_F(UsbKeyboardTest, OpensEveryModelOfTheTableAndNoOther) {
    for (const UsbModel& model : kUsbModels) {
        fakeHid::plug(model.product);
        EXPECT_THAT(m_keyboard->open(m_stop).text, HasSubstr(describe(model)));
        m_keyboard->close();
    }
    fakeHid::plug(0xC52B);
    EXPECT_FALSE(m_keyboard->open(m_stop).found);
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
    m_keyboard->close();

    plug(0xC336);
    EXPECT_THAT(reportsOf(fullFrame({1, 2, 3})),
                ElementsAre(report("11ff0c3a0101010203", 20), report("11ff0c3a0201010203", 20),
                            report("11ff0c3a0301010203", 20), report("11ff0c3a0401010203", 20),
                            report("11ff0c3a0501010203", 20)));
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

TEST_F(UsbKeyboardTest, ItsWriterLightsItAgainAfterAReplugging) {
    std::mutex mutex;
    std::condition_variable told;
    std::vector<std::string> texts;
    const auto waitForTexts = [&](std::size_t count) {
        std::unique_lock lock(mutex);
        return told.wait_for(lock, std::chrono::seconds(20), [&] { return texts.size() == count; });
    };
    const auto waitForFrame = [] {
        std::vector<std::string> reports;
        for (int tries = 0; tries < 2000 && (reports.empty() || reports.back() != kCommit); ++tries) {
            std::this_thread::sleep_for(milliseconds(10));
            std::ranges::move(fakeHid::takeReports(), std::back_inserter(reports));
        }
        return reports;
    };
    KeyboardModel model;
    model.setLighting({100, 0, 0});
    m_tree.add("hidraw0", "0003:0000046D:0000C331");
    fakeHid::plug(0xC331);
    DeviceWriter writer(std::move(m_keyboard), [&](const DeviceEvent& event) {
        const std::scoped_lock lock(mutex);
        texts.push_back(event.text);
        told.notify_one();
    });
    writer.show(model);
    const std::vector<std::string> first = waitForFrame();
    EXPECT_THAT(first, SizeIs(10));

    fakeHid::unplug();
    m_tree.remove("hidraw0");
    EXPECT_TRUE(waitForTexts(2));
    m_tree.add("hidraw0", "0003:0000046D:0000C331");
    fakeHid::plug(0xC331);
    EXPECT_EQ(waitForFrame(), first);
    writer.stop();
    EXPECT_THAT(texts, ElementsAre("The keyboard G810 (046d:c331) is lit over USB.",
                                   "The keyboard G810 (046d:c331) was unplugged.",
                                   "The keyboard G810 (046d:c331) is lit over USB."));
    m_keyboard = makeUsbKeyboard(m_tree.folders());
}

} // namespace
} // namespace glimra::keyboards
