#include "trace/trace_writer.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <limits>
#include <thread>

namespace glimra::trace {
namespace {

using namespace std::chrono_literals;

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
    const std::pair<platform::Time, std::string> cases[] = {
        {7s, "7"}, {2050ms, "2.05"}, {1ns, "0.000000001"}, {platform::Time::max(), "9223372036.854775807"}};
    for (const auto& [time, text] : cases) {
        now = time;
        writer.quit();
        EXPECT_EQ(lines.back(), "{\"t\":" + text + ",\"kind\":\"quit\"}");
    }
}

TEST_F(TraceWriterTest, AnyTextMakesAValidLine) {
    using namespace std::string_literals;
    const std::pair<std::string, std::string> cases[] = {
        {"\0\x1f\t\"\\/\x7f"s, "\\u0000\\u001f\\t\\\"\\\\/\x7f"},
        {"\u2191 \U0001F600", "\u2191 \U0001F600"},
        {"cut \xE2\x86", "cut \uFFFD"}};
    for (const auto& [text, written] : cases) {
        writer.log(text);
        EXPECT_EQ(lines.back(), "{\"t\":0.4,\"kind\":\"log\",\"text\":\"" + written + "\"}");
    }
    writer.process("\xC0", {"\xFF"});
    writer.dump("\xFF", {{"\xFF", std::numeric_limits<double>::quiet_NaN()}});
    EXPECT_TRUE(std::ranges::all_of(
        lines, [](const std::string& line) { return nlohmann::ordered_json::accept(line); }));
}

TEST_F(TraceWriterTest, LinesOfThreadsComeOutWholeAndInTheOrderOfTheirTimes) {
    TraceWriter shared([this] { return now += 1s; }, sink);
    const auto writeMany = [&] {
        for (int i = 0; i < 500; ++i)
            shared.systemLog("from a thread");
    };
    {
        const std::jthread other(writeMany);
        writeMany();
    }
    for (int second = 1; const std::string& line : lines)
        EXPECT_THAT(line, testing::StartsWith("{\"t\":" + std::to_string(second++) + ".4,"));
    EXPECT_EQ(lines.size(), 1000U);
}

} // namespace
} // namespace glimra::trace
