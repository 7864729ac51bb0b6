#include "tools/replay/script.h"

#include "tools/replay/commands.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace glimra::tools {

namespace {

constexpr std::size_t kLongestLine = std::size_t{64} * 1024;
/// Longer than anybody plays, and far less than the clock's nanoseconds can count.
constexpr platform::Time kLongestRun = std::chrono::hours(24 * 30);
constexpr platform::Duration kShowDuration = std::chrono::milliseconds(200);

/// The next line without its end; none after the last one.
std::optional<std::string> nextLine(std::istream& text) {
    std::string line;
    int character = 0;
    while ((character = text.get()) != std::istream::traits_type::eof() && character != '\n') {
        if (line.size() == kLongestLine)
            throw LineError("the line is longer than " + std::to_string(kLongestLine) + " bytes");
        line += static_cast<char>(character);
    }
    if (character != '\n' && line.empty())
        return std::nullopt;
    if (line.ends_with('\r'))
        line.pop_back();
    return line;
}

bool isUtf8(const std::string& text) {
    try {
        nlohmann::json(text).dump();
        return true;
    } catch (const nlohmann::json::type_error&) {
        return false;
    }
}

bool isSkipped(std::string_view line) {
    const std::size_t first = line.find_first_not_of(" \t");
    return first == std::string_view::npos || line[first] == '#';
}

/// Checks that a command is allowed after those before it.
class Order {
public:
    void check(const Command& command) {
        if (std::holds_alternative<Start>(command)) {
            if (m_started)
                throw LineError("the application has been started already");
            m_started = true;
        } else if (std::holds_alternative<Quit>(command) && !m_started) {
            throw LineError("the application has not been started");
        } else if (const auto* wait = std::get_if<Wait>(&command)) {
            advance(wait->duration);
        } else if (std::holds_alternative<ShowToken>(command)) {
            advance(kShowDuration);
        }
    }

private:
    void advance(platform::Duration duration) {
        m_clock += duration;
        if (m_clock > kLongestRun)
            throw LineError("the run becomes longer than 30 days");
    }

    bool m_started = false;
    platform::Time m_clock{0};
};

} // namespace

std::variant<Script, ScriptError> readScript(std::istream& text) {
    Script script;
    Order order;
    std::size_t number = 1;
    try {
        for (; const std::optional<std::string> line = nextLine(text); ++number) {
            if (!isUtf8(*line))
                throw LineError("the line is not UTF-8");
            if (isSkipped(*line))
                continue;
            Command command = parseCommand(*line);
            order.check(command);
            script.push_back(std::move(command));
        }
    } catch (const LineError& error) {
        return ScriptError{number, error.what()};
    }
    return script;
}

} // namespace glimra::tools
