#include "trace/trace_writer.h"

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
    writer.dump("state", {std::numeric_limits<double>::quiet_NaN()});
    EXPECT_TRUE(lines.back().ends_with("[null]}"));
    writer.process("\xC0", {"\xFF"});
    writer.dump("\xFF", {{"\xFF", "\xFF"}});
    EXPECT_TRUE(std::ranges::all_of(lines, [](const std::string& line) {
        return ordered_json::accept(line) && line.find('\n') == std::string::npos;
    }));
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
    picky.led(platform::StopEffects{});
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
            writer.led(platform::SetTargetDevice{4});
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
