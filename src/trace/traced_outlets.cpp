#include "trace/traced_outlets.h"

namespace glimra::trace {

void traceOutlets(app::Outlets& outlets, TraceWriter& writer) {
    for (const app::NamedOutlet& outlet : app::namedOutlets())
        if (platform::Window* const window = outlet.windowIn(outlets))
            window->visible.changed.observe(
                [&writer, name = outlet.name](bool visible) { writer.window(name, visible); });
    outlets.myTextScroll.replaced.observe(
        [&writer](std::size_t, std::size_t, std::string_view text) { writer.log(text); });
}

std::function<std::string(const platform::Window*)> windowNames(app::Outlets& outlets) {
    return [&outlets](const platform::Window* window) {
        for (const app::NamedOutlet& outlet : app::namedOutlets())
            if (window != nullptr && outlet.windowIn(outlets) == window)
                return std::string(outlet.name);
        return std::string();
    };
}

} // namespace glimra::trace
