#include "desktop/services/background_worker.h"

#include <utility>

namespace glimra::desktop {

void BackgroundWorker::post(Errand errand) {
    {
        const std::scoped_lock lock(m_mutex);
        if (m_waiting.size() >= m_capacity)
            m_waiting.pop_front();
        m_waiting.push_back(std::move(errand));
    }
    m_changed.notify_one();
}

void BackgroundWorker::run(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    while (m_changed.wait(lock, stop, [this] { return !m_waiting.empty(); }) && !stop.stop_requested()) {
        const Errand errand = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        errand(stop);
        lock.lock();
    }
}

} // namespace glimra::desktop
