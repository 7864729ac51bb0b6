#include "trace/traced_outlets.h"

#include <map>
#include <utility>

namespace glimra::trace {

void traceOutlets(app::Outlets& outlets, TraceWriter& writer) {
    for (const app::NamedOutlet& outlet : app::namedOutlets(outlets))
        if (platform::Window* const* window = std::get_if<platform::Window*>(&outlet.control))
            (*window)->visible.changed.observe(
                [&writer, name = outlet.name](bool visible) { writer.window(name, visible); });
    outlets.myTextScroll.replaced.observe(
        [&writer](std::size_t, std::size_t, std::string_view text) { writer.log(text); });
}

std::function<std::string(const platform::Window*)> windowNames(app::Outlets& outlets) {
    std::map<const platform::Window*, std::string> names;
    for (const app::NamedOutlet& outlet : app::namedOutlets(outlets))
        if (platform::Window* const* window = std::get_if<platform::Window*>(&outlet.control))
            names.emplace(*window, outlet.name);
    return [names = std::move(names)](const platform::Window* window) {
        const auto found = names.find(window);
        return found == names.end() ? std::string() : found->second;
    };
}

} // namespace glimra::trace
