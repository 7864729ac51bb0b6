#include "tools/replay/script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace glimra::tools {
namespace {

using testing::HasSubstr;

std::variant<Script, ScriptError> read(const std::string& text) {
    std::istringstream stream(text);
    return readScript(stream);
}

struct Bad {
    std::string text;
    std::size_t line;
    std::string message;
};

TEST(ScriptTest, TellsWhatIsWrongAndWhere) {
    const std::vector<Bad> scripts{
        {"start\n\n# more\nfly\nstart", 4, "unknown command \"fly\""},
        {"wait 1\nwait", 2, "SECONDS is missing"},
        {"wait -1", 1, "out of range"},
        {"wait 1e3", 1, "no plain decimal"},
        {"wait 0.0000000001", 1, "finer than a nanosecond"},
        {"wait 2000000\nwait 2000000", 2, "30 days"},
        {"start\nstart", 2, "already"},
        {"quit", 1, "not been started"},
        {"token \"abc", 1, "cut off"},
        {"token \"\\ud800\"", 1, "no JSON string"},
        {"token \"a\"b", 1, "followed by a blank"},
        {"token abc", 1, "double quotes"},
        {"token \"\xff\"", 1, "not UTF-8"},
        {"start\n# " + std::string(1 << 20, 'x'), 2, "longer than"},
        {"show \"ab\"", 1, "one character"},
        {"show \"[\\u0000\"", 1, "one character"},
        {"display 0 1080 1", 1, "W is out of range"},
        {"strip-geometry 0 0", 1, "WIDTH is out of range"},
        {"strip 000000 111111", 1, "C2 is missing"},
        {"option-key sideways", 1, "\"down\" or \"up\""},
        {"default \"k\" 9223372036854775808", 1, "out of range for an integer"},
        {"default \"k\" 1e999", 1, "JSON number"},
        {"default \"k\" [1, 2", 1, "array cut off"},
        {"default-data \"k\" 123", 1, "hexadecimal"},
        {"answer 1.5", 1, "whole number"},
        {"answer 1 fromProfileMenu", 1, "NAME has no ="},
        {"answer 1 noSuchMenu=1", 1, "noSuchMenu"},
        {"answer 1 fromProfileMenu=\"text\"", 1, "fromProfileMenu"},
        {"action \"noSuchAction:\"", 1, "not available"},
        {"dump bitmap 10", 1, "P is out of range"},
        {"front nobody", 1, "none"},
    };
    for (const Bad& bad : scripts) {
        SCOPED_TRACE(bad.text.substr(0, 60));
        const auto result = read(bad.text);
        const auto* error = std::get_if<ScriptError>(&result);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->line, bad.line);
        EXPECT_THAT(error->message, HasSubstr(bad.message));
    }
}

template <class Wanted>
Wanted only(const std::string& text) {
    const auto result = read(text);
    return std::get<Wanted>(std::get<Script>(result).at(0));
}

TEST(ScriptTest, SettingsKeepTheirType) {
    const auto value = [](const std::string& text) {
        return only<SetDefault>("default \"k\" " + text).value;
    };
    EXPECT_EQ(value("true"), platform::StoredValue(true));
    EXPECT_EQ(value("-9223372036854775808"), platform::StoredValue(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(value("1e3"), platform::StoredValue(1000.0));
    EXPECT_EQ(value("80.0"), platform::StoredValue(80.0));
    EXPECT_EQ(value(R"("a \"b\" \u0000")"), platform::StoredValue(std::string("a \"b\" \0", 7)));
    const platform::NumberArray numbers{std::int64_t{1}, 2.5, std::int64_t{3}};
    EXPECT_EQ(value("[1, 2.5 ,3]"), platform::StoredValue(numbers));
    EXPECT_EQ(value("[ ]"), platform::StoredValue(platform::NumberArray{}));
    EXPECT_EQ(only<SetDefault>("default-data \"k\" 00fF").value,
              platform::StoredValue(platform::Data{0, 255}));
}

TEST(ScriptTest, BlanksLineEndsAndExactTimes) {
    EXPECT_EQ(only<Wait>(" \t wait\t0.1000000010 \r\n").duration, std::chrono::nanoseconds(100'000'001));
    EXPECT_EQ(only<Wait>("\n  # comment\n\nwait 20").duration, std::chrono::seconds(20));
    EXPECT_FALSE(only<SetFrontmost>("front none").application);
    EXPECT_EQ(only<SetFrontmost>("front \"\"").application, platform::RunningApplication{});
    const auto answer = only<QueueAnswer>("answer -2 WoWAppNameField=\"my = game\" fromProfileMenu=4");
    EXPECT_EQ(answer.code, -2);
    ASSERT_EQ(answer.settings.size(), 2U);
    EXPECT_EQ(std::get<std::string>(answer.settings[0].value), "my = game");
    EXPECT_EQ(std::get<int>(answer.settings[1].value), 4);
}

} // namespace
} // namespace glimra::tools
