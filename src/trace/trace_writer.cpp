#include "trace/trace_writer.h"

#include "platform/hexadecimal.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <concepts>
#include <tuple>
#include <utility>

namespace glimra::trace {

namespace {

using nlohmann::ordered_json;

/// In the order of `TraceKind`.
constexpr std::array<std::string_view, kTraceKindCount> kKindNames{
    "led",   "log",    "system-log", "process",  "sound", "alert", "panel",
    "modal", "window", "url",        "activity", "frame", "quit",  "dump"};

constexpr auto kHexOfByte = [] {
    std::array<std::array<char, 2>, 256> texts{};
    for (std::size_t byte = 0; byte < texts.size(); ++byte)
        texts[byte] = {platform::kHexDigits[byte / 16], platform::kHexDigits[byte % 16]};
    return texts;
}();

// Each overload appends one value as JSON text.

void append(std::string& line, const ordered_json& value) {
    line += value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

void append(std::string& line, const std::vector<std::string>& texts) {
    append(line, ordered_json(texts));
}

/// Whether JSON contains the character unescaped.
bool isPlain(char character) {
    return character >= ' ' && character <= '~' && character != '"' && character != '\\';
}

void append(std::string& line, const std::convertible_to<std::string_view> auto& value) {
    const std::string_view text = value;
    // Nearly every text is plain, and building a JSON value for it would cost more than the rest of the line.
    if (!std::ranges::all_of(text, isPlain))
        return append(line, ordered_json(text));
    line += '"';
    line += text;
    line += '"';
}

void append(std::string& line, const std::optional<std::string>& text) {
    if (text)
        append(line, *text);
    else
        line += "null";
}

void append(std::string& line, const bool& truth) {
    line += truth ? "true" : "false";
}

void append(std::string& line, const std::integral auto& number) {
    std::array<char, 24> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    line.append(digits.data(), result.ptr);
}

void append(std::string& line, const platform::LedBitmapView& bitmap) {
    std::array<char, 2 * platform::kLedBitmapBytes> digits;
    char* next = digits.data();
    for (const std::uint8_t byte : bitmap)
        next = std::ranges::copy(kHexOfByte[byte], next).out;
    line += '"';
    line.append(digits.data(), digits.size());
    line += '"';
}

template <class... Arguments>
void append(std::string& line, const std::tuple<Arguments...>& arguments) {
    line += '[';
    std::string_view separator;
    const auto appendOne = [&](const auto& argument) {
        line += std::exchange(separator, ",");
        append(line, argument);
    };
    std::apply([&](const Arguments&... each) { (appendOne(each), ...); }, arguments);
    line += ']';
}

void appendSeconds(std::string& line, platform::Time time) {
    constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
    append(line, time.count() / kNanosecondsPerSecond);
    std::int64_t fraction = time.count() % kNanosecondsPerSecond;
    if (fraction == 0)
        return;
    std::array<char, 10> decimals{'.'};
    for (std::size_t place = decimals.size() - 1; place > 0; --place, fraction /= 10)
        decimals[place] = static_cast<char>('0' + fraction % 10);
    const std::string_view text(decimals.data(), decimals.size());
    line += text.substr(0, text.find_last_not_of('0') + 1);
}

template <class Value>
struct Field {
    std::string_view key;
    const Value& value;
};
template <class Value>
Field(std::string_view, const Value&) -> Field<Value>;

template <class Value>
void appendField(std::string& line, const Field<Value>& field) {
    line += ",\"";
    line += field.key;
    line += "\":";
    append(line, field.value);
}

} // namespace

std::string_view nameOf(TraceKind kind) {
    return kKindNames[static_cast<std::size_t>(kind)];
}

std::optional<TraceKind> traceKindNamed(std::string_view name) {
    const auto* found = std::ranges::find(kKindNames, name);
    if (found == kKindNames.end())
        return std::nullopt;
    return static_cast<TraceKind>(found - kKindNames.begin());
}

TraceWriter::TraceWriter(std::function<platform::Time()> now, Sink sink, TraceKinds wanted)
    : m_now(std::move(now)),
      m_sink(std::move(sink)),
      m_wanted(wanted) {
}

template <class... Fields>
void TraceWriter::write(TraceKind kind, const Fields&... fields) {
    if (!wants(kind))
        return;
    const std::scoped_lock lock(m_mutex);
    m_line = R"({"t":)";
    appendSeconds(m_line, m_now());
    m_line += R"(,"kind":")";
    m_line += nameOf(kind);
    m_line += '"';
    (appendField(m_line, fields), ...);
    m_line += "}\n";
    m_sink(m_line);
}

void TraceWriter::led(const platform::LedCall& call) {
    std::visit(
        [this](const auto& one) {
            write(TraceKind::Led, Field{"call", one.kName}, Field{"args", one.arguments()});
        },
        call);
}

void TraceWriter::led(std::string_view function) {
    write(TraceKind::Led, Field{"call", function}, Field{"args", std::tuple()});
}

void TraceWriter::log(std::string_view text) {
    write(TraceKind::Log, Field{"text", text});
}

void TraceWriter::systemLog(std::string_view text) {
    write(TraceKind::SystemLog, Field{"text", text});
}

void TraceWriter::process(std::string_view path, const std::vector<std::string>& arguments) {
    write(TraceKind::Process, Field{"path", path}, Field{"args", arguments});
}

void TraceWriter::sound(std::string_view name) {
    write(TraceKind::Sound, Field{"name", name});
}

void TraceWriter::alert(const platform::Alert& alert) {
    write(TraceKind::Alert, Field{"title", alert.title}, Field{"text", alert.text},
          Field{"buttons", alert.buttons});
}

void TraceWriter::panel(PanelKind panel, const std::optional<std::string>& path) {
    const std::string_view name = panel == PanelKind::Open ? "open" : "save";
    write(TraceKind::Panel, Field{"panel", name}, Field{"path", path});
}

void TraceWriter::modal(std::string_view window, int answer) {
    write(TraceKind::Modal, Field{"window", window}, Field{"answer", answer});
}

void TraceWriter::window(std::string_view window, bool visible) {
    write(TraceKind::Window, Field{"window", window}, Field{"visible", visible});
}

void TraceWriter::url(std::string_view url) {
    write(TraceKind::Url, Field{"url", url});
}

void TraceWriter::activity(ActivityAction action, std::string_view reason) {
    const std::string_view name = action == ActivityAction::Begin ? "begin" : "end";
    write(TraceKind::Activity, Field{"action", name}, Field{"reason", reason});
}

void TraceWriter::frame(FrameAction action, std::string_view name) {
    const std::string_view actionName = action == FrameAction::Restore ? "restore" : "save";
    write(TraceKind::Frame, Field{"action", actionName}, Field{"name", name});
}

void TraceWriter::quit() {
    write(TraceKind::Quit);
}

void TraceWriter::dump(std::string_view what, const ordered_json& value) {
    write(TraceKind::Dump, Field{"what", what}, Field{"value", value});
}

} // namespace glimra::trace
