#pragma once

#include "platform/led_driver.h"
#include "platform/run_loop.h"
#include "platform/window_system.h"

#include <nlohmann/json_fwd.hpp>

#include <bitset>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::trace {

/// The kinds of output that leave the application.
enum class TraceKind {
    Led,
    Log,
    SystemLog,
    Process,
    Sound,
    Alert,
    Panel,
    Modal,
    Window,
    Url,
    Activity,
    Frame,
    Quit,
    Dump,
};
inline constexpr std::size_t kTraceKindCount = 14;

/// The kind's name in a line: "led", "system-log" ...
std::string_view nameOf(TraceKind kind);
/// The kind with that name; none when there is no such kind.
std::optional<TraceKind> traceKindNamed(std::string_view name);

/// A set of kinds, empty by default.
class TraceKinds {
public:
    static TraceKinds all() {
        TraceKinds kinds;
        kinds.m_bits.set();
        return kinds;
    }
    void add(TraceKind kind) { m_bits.set(static_cast<std::size_t>(kind)); }
    bool contains(TraceKind kind) const { return m_bits.test(static_cast<std::size_t>(kind)); }

private:
    std::bitset<kTraceKindCount> m_bits;
};

enum class PanelKind { Open, Save };
enum class ActivityAction { Begin, End };
enum class FrameAction { Restore, Save };

/// Writes the application's output as JSON lines. Each line is one object: "t" (seconds, with no more
/// decimals than needed), "kind", then the fields of that kind. Invalid UTF-8 is replaced with U+FFFD; a
/// number that JSON cannot express becomes null. Calls for an unwanted kind do nothing.
///
/// Any thread; lines are written whole and in the order of their times. `now` (0 or more) and `sink` are
/// called on the writing thread, one call at a time, and must not call the writer.
class TraceWriter {
public:
    using Sink = std::function<void(std::string_view line)>;

    /// `sink` receives each line including its line end.
    TraceWriter(std::function<platform::Time()> now, Sink sink, TraceKinds wanted = TraceKinds::all());

    bool wants(TraceKind kind) const { return m_wanted.contains(kind); }

    void led(const platform::LedCall& call);
    /// An LED function without arguments that changes no lights, by its name.
    void led(std::string_view function);
    void log(std::string_view text);
    void systemLog(std::string_view text);
    void process(std::string_view path, const std::vector<std::string>& arguments);
    void sound(std::string_view name);
    void alert(const platform::Alert& alert);
    void panel(PanelKind panel, const std::optional<std::string>& path);
    void modal(std::string_view window, int answer);
    void window(std::string_view window, bool visible);
    void url(std::string_view url);
    void activity(ActivityAction action, std::string_view reason);
    void frame(FrameAction action, std::string_view name);
    void quit();
    void dump(std::string_view what, const nlohmann::ordered_json& value);

private:
    template <class... Fields>
    void write(TraceKind kind, const Fields&... fields);

    std::function<platform::Time()> m_now;
    Sink m_sink;
    TraceKinds m_wanted;
    std::mutex m_mutex;
    /// Reused, so that writing a line rarely allocates.
    std::string m_line;
};

} // namespace glimra::trace
