#include "tools/strip/strip_script.h"

#include "screenlink/demonstration.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace glimra::tools {

namespace {

using Words = std::span<const std::string>;
using Actions = std::vector<Action>;

constexpr long kLongestWaitMs = 3'600'000;

/// For error messages, which shall not send a terminal what a script happened to hold.
std::string quoted(std::string_view text) {
    constexpr std::size_t kLongest = 40;
    std::string result = "\"";
    for (const char c : text.substr(0, kLongest))
        result += (c >= ' ' && c <= '~') ? c : '?';
    return result + (text.size() > kLongest ? "...\"" : "\"");
}

template <typename Number>
std::optional<Number> parseNumber(std::string_view text, int base) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

/// The text with its escapes resolved; none when one of them is no escape.
std::optional<std::string> unescape(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        std::size_t length = 1;
        char character = text[0];
        if (text.starts_with("\\\\")) {
            length = 2;
        } else if (text.starts_with("\\0")) {
            length = 2;
            character = '\0';
        } else if (text.starts_with("\\x") && text.size() >= 4) {
            const auto value = parseNumber<std::uint8_t>(text.substr(2, 2), 16);
            if (!value)
                return std::nullopt;
            length = 4;
            character = static_cast<char>(*value);
        } else if (character == '\\') {
            return std::nullopt;
        }
        result += character;
        text.remove_prefix(length);
    }
    return result;
}

screenlink::Token parseToken(std::string_view word) {
    const auto text = unescape(word);
    if (!text)
        throw CommandError(quoted(word) + " has a backslash that begins no escape: write \\xHH, \\0 or \\\\");
    const auto token = screenlink::tokenOf(*text);
    if (!token)
        throw CommandError(quoted(word) +
                           " is no token: a token is one character U+0000 to U+007F, or one of "
                           "` [ ] { } and one character U+0001 to U+007F");
    return *token;
}

std::uint32_t parseColor(const std::string& word) {
    const auto value = parseNumber<std::uint32_t>(word, 16);
    if (word.size() != 6 || !value)
        throw CommandError(quoted(word) + " is no colour: write RRGGBB in hexadecimal");
    return *value;
}

Actions parseSend(Words words) {
    Actions actions;
    for (const std::string& word : words)
        actions.emplace_back(SendToken{parseToken(word)});
    return actions;
}

Actions parseFrame(Words words) {
    screenlink::StripFrame frame{};
    std::transform(words.begin(), words.end(), frame.begin(), parseColor);
    return {ShowFrame{frame}};
}

Actions parseWait(Words words) {
    const auto time = parseNumber<long>(words[0], 10);
    if (!time || *time < 0 || *time > kLongestWaitMs)
        throw CommandError(quoted(words[0]) + " is no time to wait: write milliseconds, 0 to " +
                           std::to_string(kLongestWaitMs));
    return {Wait{std::chrono::milliseconds(*time)}};
}

Actions parseStage(Words words) {
    return {Stage{words[0]}};
}

Actions calibrate(Words) {
    return {ShowFrame{screenlink::testPattern()}};
}

Actions off(Words) {
    return {ShowFrame{screenlink::kDarkFrame}};
}

Actions demo(Words) {
    using std::chrono::duration_cast;
    using std::chrono::milliseconds;
    Actions actions;
    for (const screenlink::DemonstrationStep& step : screenlink::demonstrationSteps()) {
        actions.emplace_back(SendToken{*screenlink::tokenOf(step.token)});
        actions.emplace_back(Wait{duration_cast<milliseconds>(step.settles)});
        if (!step.stage.empty())
            actions.emplace_back(Stage{std::string(step.stage)});
        actions.emplace_back(Wait{duration_cast<milliseconds>(step.stands)});
    }
    return actions;
}

constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

struct Command {
    std::string_view name;
    std::size_t leastArguments;
    std::size_t mostArguments;
    std::string_view takes;
    Actions (*parse)(Words);
};

constexpr std::array<Command, 7> kCommands = {{
    {"send", 1, kAnyNumber, "one token or more", parseSend},
    {"frame", screenlink::kCellCount, screenlink::kCellCount, "11 colours", parseFrame},
    {"calibrate", 0, 0, "no arguments", calibrate},
    {"off", 0, 0, "no arguments", off},
    {"wait", 1, 1, "a number of milliseconds", parseWait},
    {"stage", 1, 1, "a name", parseStage},
    {"demo", 0, 0, "no arguments", demo},
}};

} // namespace

std::vector<Action> parseCommand(std::span<const std::string> words) {
    if (words.empty())
        return {};
    const auto command = std::find_if(kCommands.begin(), kCommands.end(),
                                      [&words](const Command& entry) { return entry.name == words[0]; });
    if (command == kCommands.end())
        throw CommandError((words[0].starts_with("--") ? "there is no option " : "there is no command ") +
                           quoted(words[0]));
    const auto arguments = words.subspan(1);
    if (arguments.size() < command->leastArguments || arguments.size() > command->mostArguments)
        throw CommandError(std::string(command->name) + " takes " + std::string(command->takes) + " (" +
                           std::to_string(arguments.size()) + " given)");
    return command->parse(arguments);
}

std::vector<Action> parseLine(std::string_view line) {
    constexpr std::string_view kBlanks = " \t\r";
    std::vector<std::string> words;
    for (auto begin = line.find_first_not_of(kBlanks); begin != std::string_view::npos;) {
        const auto end = std::min(line.find_first_of(kBlanks, begin), line.size());
        words.emplace_back(line.substr(begin, end - begin));
        begin = line.find_first_not_of(kBlanks, end);
    }
    if (!words.empty() && words[0].starts_with('#'))
        return {};
    return parseCommand(words);
}

} // namespace glimra::tools
