#include "tools/strip/strip_script.h"

#include <gmock/gmock.h>

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

std::string errorOf(std::span<const std::string> words) {
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
    const std::string nul("a\0b", 3);
    const std::vector<std::vector<std::string>> bad = {
        {"send"},
        {"send", ""},
        {"send", "CC"},
        {"send", "C", "abc"},
        {"send", "\\"},
        {"send", "\\x4"},
        {"send", "\\x+4"},
        {"send", "\\n"},
        {"send", "\\x80"},
        {"send", "\xc3\xa4"},
        {"send", "`\xff"},
        {"send", "{\\0"},
        {"send", nul},
        {"send", std::string(100'000, '\n')},
        frameCommand(10, "ff0000"),
        frameCommand(12, "ff0000"),
        frameCommand(11, "0xff00"),
        frameCommand(11, "-f0000"),
        frameCommand(11, "ff00000"),
        {"wait"},
        {"wait", "-1"},
        {"wait", "3600001"},
        {"wait", "99999999999999999999"},
        {"wait", "1s"},
        {"calibrate", "now"},
        {"off", ""},
        {""},
        {"\x1b[2J"},
        {nul},
    };
    for (const auto& words : bad) {
        const std::string error = errorOf(words);
        EXPECT_FALSE(error.empty()) << testing::PrintToString(words);
        EXPECT_LT(error.size(), 300U);
        for (const char c : error)
            EXPECT_TRUE(c >= ' ' && c <= '~') << error;
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
