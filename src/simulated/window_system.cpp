#include "simulated/window_system.h"

namespace glimra::simulated {

namespace {

template <class Value>
std::optional<Value> takeFirst(std::deque<Value>& queue) {
    if (queue.empty())
        return std::nullopt;
    Value first = std::move(queue.front());
    queue.pop_front();
    return first;
}

} // namespace

int SimulatedWindowSystem::runModal(platform::Window& window) {
    window.bringToFront();
    const ModalAnswer answer = takeFirst(m_answers).value_or(ModalAnswer{});
    for (const std::function<void()>& makeSetting : answer.settings)
        makeSetting();
    return answer.code;
}

std::optional<std::string> SimulatedWindowSystem::nextPath() {
    return takeFirst(m_paths);
}

} // namespace glimra::simulated
