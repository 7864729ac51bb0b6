#include "trace/trace_writer.h"

#include "lighting/led_bitmap.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <limits>
#include <thread>

namespace glimra::trace {
namespace {

using namespace std::chrono_literals;
using nlohmann::ordered_json;
using testing::ElementsAre;

struct TraceWriterTest : testing::Test {
    platform::Time now = 400ms;
    /// Without their ends.
    std::vector<std::string> lines;
    TraceWriter::Sink sink = [this](std::string_view line) {
        ASSERT_TRUE(line.ends_with('\n'));
        lines.emplace_back(line.substr(0, line.size() - 1));
    };
    TraceWriter writer{[this] { return now; }, sink};
};

TEST_F(TraceWriterTest, WritesEachKindWithItsKeysInOrder) {
    writer.led("LogiLedInit");
    writer.led("LogiLedPulseSingleKey", {42U, 100, 0, 0, 25, 0, 0, 400, true});
    writer.log("Showing test pattern on the keyboard.\n");
    writer.systemLog("Glimra data read error: none");
    writer.process("/usr/bin/say", {"-v", "it's \"on\""});
    writer.process("/usr/bin/true", {});
    writer.sound("Tink");
    writer.alert({"Unsaved", "Save them?", {"Save", "Discard"}});
    writer.panel(PanelKind::Open, "/tmp/a.keycolormap");
    writer.panel(PanelKind::Save, std::nullopt);
    writer.modal("copyProfileDialog", -1000);
    writer.window("mainWindow", true);
    writer.url("https://example.org/?a=b&c");
    writer.activity(ActivityAction::Begin, "game");
    writer.activity(ActivityAction::End, "game");
    writer.frame(FrameAction::Restore, "windowPosition");
    writer.frame(FrameAction::Save, "windowPosition");
    writer.quit();
    EXPECT_THAT(
        lines,
        ElementsAre(
            R"({"t":0.4,"kind":"led","call":"LogiLedInit","args":[]})",
            R"({"t":0.4,"kind":"led","call":"LogiLedPulseSingleKey","args":[42,100,0,0,25,0,0,400,true]})",
            R"({"t":0.4,"kind":"log","text":"Showing test pattern on the keyboard.\n"})",
            R"({"t":0.4,"kind":"system-log","text":"Glimra data read error: none"})",
            R"({"t":0.4,"kind":"process","path":"/usr/bin/say","args":["-v","it's \"on\""]})",
            R"({"t":0.4,"kind":"process","path":"/usr/bin/true","args":[]})",
            R"({"t":0.4,"kind":"sound","name":"Tink"})",
            R"({"t":0.4,"kind":"alert","title":"Unsaved","text":"Save them?","buttons":["Save","Discard"]})",
            R"({"t":0.4,"kind":"panel","panel":"open","path":"/tmp/a.keycolormap"})",
            R"({"t":0.4,"kind":"panel","panel":"save","path":null})",
            R"({"t":0.4,"kind":"modal","window":"copyProfileDialog","answer":-1000})",
            R"({"t":0.4,"kind":"window","window":"mainWindow","visible":true})",
            R"({"t":0.4,"kind":"url","url":"https://example.org/?a=b&c"})",
            R"({"t":0.4,"kind":"activity","action":"begin","reason":"game"})",
            R"({"t":0.4,"kind":"activity","action":"end","reason":"game"})",
            R"({"t":0.4,"kind":"frame","action":"restore","name":"windowPosition"})",
            R"({"t":0.4,"kind":"frame","action":"save","name":"windowPosition"})",
            R"({"t":0.4,"kind":"quit"})"));
}

TEST_F(TraceWriterTest, TimeHasNoMoreDecimalsThanNeeded) {
    const std::vector<std::pair<platform::Time, std::string>> cases{
        {0s, "0"},
        {7s, "7"},
        {2050ms, "2.05"},
        {100s, "100"},
        {1ns, "0.000000001"},
        {platform::Time::max(), "9223372036.854775807"}};
    for (const auto& [time, text] : cases) {
        now = time;
        writer.quit();
        EXPECT_EQ(lines.back(), "{\"t\":" + text + ",\"kind\":\"quit\"}");
    }
}

TEST_F(TraceWriterTest, BitmapIsOneTextOfHexDigits) {
    lighting::LedBitmap bitmap{};
    for (std::size_t i = 0; i < bitmap.size(); ++i)
        bitmap[i] = static_cast<std::uint8_t>(i);
    writer.led("LogiLedSetLightingFromBitmap", {bitmap});
    const std::string digits = ordered_json::parse(lines.back()).at("args").at(0);
    ASSERT_EQ(digits.size(), 1008U);
    EXPECT_EQ(digits.find_first_not_of("0123456789abcdef"), std::string::npos);
    for (std::size_t i = 0; i < bitmap.size(); ++i)
        ASSERT_EQ(std::stoul(digits.substr(2 * i, 2), nullptr, 16), bitmap[i]);
}

TEST_F(TraceWriterTest, AnyTextMakesAValidLine) {
    using namespace std::string_literals;
    const std::vector<std::pair<std::string, std::string>> cases{
        {"\0\x1f\t\"\\/\x7f"s, "\\u0000\\u001f\\t\\\"\\\\/\x7f"},
        {"\u2191 \U0001F600", "\u2191 \U0001F600"},
        {"a\xFFz", "a\uFFFDz"},
        {"cut \xE2\x86", "cut \uFFFD"}};
    for (const auto& [text, written] : cases) {
        writer.log(text);
        EXPECT_EQ(lines.back(), "{\"t\":0.4,\"kind\":\"log\",\"text\":\"" + written + "\"}");
    }
    writer.process("\xC0", {"\xFF"});
    writer.dump("\xFF", {{"\xFF", "\xFF"}});
    EXPECT_TRUE(std::ranges::all_of(lines, [](const std::string& line) {
        return ordered_json::accept(line) && line.find('\n') == std::string::npos;
    }));
}

TEST_F(TraceWriterTest, DumpKeepsTheOrderOfKeysAndHasNullForWhatIsNoNumber) {
    writer.dump("bitmap 3", "00ff");
    writer.dump("state", {{"z", std::numeric_limits<double>::quiet_NaN()},
                          {"a", {0.1, -std::numeric_limits<double>::infinity(), true}}});
    EXPECT_THAT(lines, ElementsAre(R"({"t":0.4,"kind":"dump","what":"bitmap 3","value":"00ff"})",
                                   R"({"t":0.4,"kind":"dump","what":"state","value":{"z":null,)"
                                   R"("a":[0.1,null,true]}})"));
}

TEST_F(TraceWriterTest, WritesOnlyTheKindsThatAreWanted) {
    TraceKinds wanted;
    for (const std::string_view name : {"system-log", "quit"})
        wanted.add(traceKindNamed(name).value());
    EXPECT_EQ(traceKindNamed("systemlog"), std::nullopt);
    EXPECT_EQ(traceKindNamed(""), std::nullopt);
    int timesAsked = 0;
    TraceWriter picky(
        [&] {
            ++timesAsked;
            return now;
        },
        sink, wanted);
    picky.led("LogiLedSetLightingFromBitmap", {lighting::blankBitmap()});
    picky.log("text");
    picky.dump("state", {});
    EXPECT_EQ(timesAsked, 0);
    picky.systemLog("text");
    picky.quit();
    EXPECT_THAT(lines,
                ElementsAre(R"({"t":0.4,"kind":"system-log","text":"text"})", R"({"t":0.4,"kind":"quit"})"));
}

TEST(TraceWriterThreads, LinesComeOutWholeAndInTheOrderOfTheirTimes) {
    constexpr int kLinesOfEach = 500;
    std::vector<std::string> lines;
    platform::Time now{};
    TraceWriter writer([&now] { return now += 1ns; },
                       [&lines](std::string_view line) { lines.emplace_back(line); });
    {
        std::jthread other([&writer] {
            for (int i = 0; i < kLinesOfEach; ++i)
                writer.systemLog("from a thread");
        });
        for (int i = 0; i < kLinesOfEach; ++i)
            writer.led("LogiLedSetTargetDevice", {4});
    }
    ASSERT_EQ(lines.size(), 2U * kLinesOfEach);
    double last = 0.0;
    for (const std::string& line : lines) {
        const ordered_json parsed = ordered_json::parse(line);
        EXPECT_GT(parsed.at("t").get<double>(), std::exchange(last, parsed.at("t").get<double>()));
    }
}

} // namespace
} // namespace glimra::trace
