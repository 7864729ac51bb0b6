#include "tools/strip/strip_script.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace glimra::tools {
namespace {

using screenlink::Token;
using testing::ElementsAre;
using testing::IsSupersetOf;

std::vector<Token> tokensOf(std::string_view line) {
    std::vector<Token> tokens;
    for (const Action& action : parseLine(line))
        tokens.push_back(std::get<SendToken>(action).token);
    return tokens;
}

TEST(StripScript, TokensAreWrittenPlainlyOrWithEscapes) {
    EXPECT_THAT(tokensOf(R"(send C - ` \x41 \0 \\ \x20)"),
                ElementsAre(Token{{}, 'C'}, Token{{}, '-'}, Token{{}, '`'}, Token{{}, 'A'}, Token{{}, '\0'},
                            Token{{}, '\\'}, Token{{}, ' '}));
    EXPECT_THAT(
        tokensOf("\tsend  [] `[ {\\x7f \\x5bA }\\\\\r"),
        ElementsAre(Token{'[', ']'}, Token{'`', '['}, Token{'{', '\x7f'}, Token{'[', 'A'}, Token{'}', '\\'}));
}

std::string errorOf(const std::vector<std::string>& words) {
    try {
        parseCommand(words);
        return "";
    } catch (const CommandError& error) {
        return error.what();
    }
}

std::vector<std::string> frameCommand(std::size_t colors, const std::string& lastColor) {
    std::vector<std::string> words(colors + 1, "ff0000");
    words.front() = "frame";
    words.back() = lastColor;
    return words;
}

TEST(StripScript, WhatCannotBeUnderstoodIsSaidInOnePrintableLine) {
    using Words = std::vector<std::string>;
    std::vector<Words> bad{{""},        {"\x1b[2J"}, {"send"}, {"send", "C", "abc"}, {"calibrate", "now"},
                           {"off", ""}, {"wait"}};
    bad.push_back(frameCommand(10, "ff0000"));
    bad.push_back(frameCommand(12, "ff0000"));
    bad.push_back({"send", std::string(100'000, '\n')});
    bad.push_back({"send", std::string("a\0b", 3)});
    for (const std::string token :
         {"", "CC", "\\", "\\x4", "\\x+4", "\\n", "\\x80", "\xc3\xa4", "`\xff", "{\\0"})
        bad.push_back({"send", token});
    for (const char* const color : {"0xff00", "-f0000", "ff00000"})
        bad.push_back(frameCommand(11, color));
    for (const char* const time : {"-1", "3600001", "99999999999999999999", "1s"})
        bad.push_back({"wait", time});
    for (const auto& words : bad) {
        const std::string error = errorOf(words);
        EXPECT_FALSE(error.empty()) << testing::PrintToString(words);
        EXPECT_LT(error.size(), 300U);
        EXPECT_TRUE(std::ranges::all_of(error, [](char c) { return c >= ' ' && c <= '~'; })) << error;
    }
    EXPECT_EQ(errorOf(frameCommand(11, "00ffAA")), "");
}

TEST(StripScript, TheDemonstrationCanBePlayedAndEndsByItself) {
    const std::vector<Action> actions = parseLine("demo");
    EXPECT_FALSE(std::holds_alternative<ShowFrame>(actions.back()));
    std::vector<std::string> stages;
    for (const Action& action : actions)
        if (const auto* stage = std::get_if<Stage>(&action))
            stages.push_back(stage->name);
    EXPECT_THAT(stages, IsSupersetOf({"rest", "combat", "dead", "whisper"}));
}

} // namespace
} // namespace glimra::tools
